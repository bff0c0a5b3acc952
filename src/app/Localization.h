#pragma once
// The road to every user-visible text: a key looked up in the chosen language's table.
// Never empty: an unknown key gives the key itself.
#include <QString>

class UserDefaults;

namespace Localization {

QString localizedStringForKey(const QString &key);
// "AppLanguage", clamped to 0..8, is 0.
bool isEnglishLanguage(const UserDefaults &defaults);

} // namespace Localization
