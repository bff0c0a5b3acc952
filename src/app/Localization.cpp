#include "Localization.h"

#include "SettingsKeys.h"
#include "UserDefaults.h"

#include <QHash>
#include <algorithm>

namespace Localization {

QString localizedStringForKey(const QString &key)
{
    // English texts of the keys the program reads before its translation tables load.
    static const QHash<QString, QString> english{
        {QStringLiteral("Meun_App"), QStringLiteral("Capstan")},
        {QStringLiteral("Main_Fram_Original_Quality"), QStringLiteral("Original")},
        {QStringLiteral("Main_Fram_HD_Quality"), QStringLiteral("HD")},
        {QStringLiteral("Main_Fram_SD_Quality"), QStringLiteral("SD")},
        {QStringLiteral("Alert_Title"), QStringLiteral("Capstan")},
        {QStringLiteral("Alert_Mic_Message"),
         QStringLiteral("No microphone was found. Connect one and choose it again.")},
        {QStringLiteral("Alert_DisAble_Message"),
         QStringLiteral("Capstan may not use this device. Allow it in the system settings.")},
    };
    return english.value(key, key);
}

bool isEnglishLanguage(const UserDefaults &defaults)
{
    return std::clamp<qint64>(defaults.integerForKey(Keys::AppLanguage), 0, 8) == 0;
}

} // namespace Localization
