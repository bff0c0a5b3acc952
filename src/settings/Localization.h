#pragma once
// The road to every user-visible text: a key looked up in the installed language's table
// (":/translations/capstan_<code>.qm", an id-based Qt table whose ids are the keys).
// Never empty for a non-empty key: an unknown key gives the key itself.
#include <QString>
#include <QtGlobal>

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

// The language of the texts: "AppLanguage" clamped to 0..8, or, until the user has chosen one
// ("isLanguageChanged"), the system's. 1 is Simplified Chinese, 2 Traditional, the rest English.
qint64 currentLanguage(const UserDefaults &defaults);
// 0, 1 or 2 from the first preferred language: "AppleLanguages", else the desktop's locale.
int getSystemLanguage(const UserDefaults &defaults);
// The preferred language a locale stands for: Chinese in Traditional script "zh-Hant" (zh_TW,
// zh_HK, zh_MO), other Chinese "zh-Hans" (zh_CN, zh_SG), anything else language-territory.
QString appleLanguageForLocale(const QString &localeName);
// The table of a language number: "zh-Hans", "zh-Hant" or "en".
QString languageCode(qint64 language);
// Marks the language as the user's choice and installs the table of "AppLanguage"; every
// widget then receives a LanguageChange event.
void setLanguage(UserDefaults &defaults);

} // namespace Localization
