#include "Localization.h"

#include "Images.h"
#include "Log.h"
#include "SettingsKeys.h"
#include "UserDefaults.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QTranslator>
#include <algorithm>

namespace Localization {

namespace {

bool loadTable(QTranslator &translator, const QString &code)
{
    return translator.load(QStringLiteral(":/translations/capstan_%1.qm").arg(code));
}

} // namespace

QString localizedStringForKey(const QString &key)
{
    // qtTrId gives back the id itself when no installed table has it.
    const QString text = qtTrId(key.toUtf8().constData());
    if (text != key)
        return text;
    // English texts of the keys the program reads before its tables are installed.
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

void installLanguage(const QString &code)
{
    QCoreApplication *app = QCoreApplication::instance();
    if (!app) {
        capstan::NSLog(lcApp, "no application to install the language %s in", qUtf8Printable(code));
        return;
    }
    capstanInitResources();
    // The application owns the table, so it goes with the application; the pointer forgets it.
    static QPointer<QTranslator> installed;
    auto *translator = new QTranslator(app);
    bool loaded = loadTable(*translator, code);
    if (!loaded && code != QLatin1String("en")) {
        capstan::NSLog(lcApp, "no language table for %s; English instead", qUtf8Printable(code));
        loaded = loadTable(*translator, QStringLiteral("en"));
    }
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
    }
    if (!loaded) {
        capstan::NSLog(lcApp, "no English language table; texts are their keys");
        delete translator;
        return;
    }
    QCoreApplication::installTranslator(translator);
    installed = translator;
}

bool isEnglishLanguage(const UserDefaults &defaults)
{
    return std::clamp<qint64>(defaults.integerForKey(Keys::AppLanguage), 0, 8) == 0;
}

} // namespace Localization
