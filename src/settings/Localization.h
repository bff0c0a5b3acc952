#pragma once
// The road to every user-visible text: a key looked up in the installed language's table
// (":/translations/capstan_<code>.qm", an id-based Qt table whose ids are the keys).
// Never empty for a non-empty key: an unknown key gives the key itself.
#include <QString>

class UserDefaults;

namespace Localization {

// Thread-safe; works before any table is installed and without an application object, by a
// built-in English text for the few keys read that early.
QString localizedStringForKey(const QString &key);
// Installs the table of a language ("en", "zh-Hans", "zh-Hant") on the application, in place of
// the one installed before; a language without a table gets English. Main thread, with a
// QCoreApplication; the application's widgets receive a LanguageChange event.
void installLanguage(const QString &code);
// "AppLanguage", clamped to 0..8, is 0.
bool isEnglishLanguage(const UserDefaults &defaults);

} // namespace Localization
