#include "Localization.h"

#include "Images.h"
#include "Log.h"
#include "SettingsKeys.h"
#include "UserDefaults.h"

#include <QCoreApplication>
#include <QHash>
#include <QLibraryInfo>
#include <QLocale>
#include <QPointer>
#include <QTranslator>
#include <algorithm>

namespace Localization {

namespace {

bool loadTable(QTranslator &translator, const QString &code)
{
    return translator.load(QStringLiteral(":/translations/capstan_%1.qm").arg(code));
}

// Qt's own texts (its dialogs' buttons) in the same language, where the system has them.
void installQtTable(QCoreApplication *app, const QString &code)
{
    static QPointer<QTranslator> installed;
    if (installed) {
        QCoreApplication::removeTranslator(installed);
        delete installed;
    }
    static const QHash<QString, QString> tables{
        {QStringLiteral("zh-Hans"), QStringLiteral("qtbase_zh_CN")},
        {QStringLiteral("zh-Hant"), QStringLiteral("qtbase_zh_TW")},
    };
    const QString table = tables.value(code);
    if (table.isEmpty())
        return;
    auto *translator = new QTranslator(app);
    if (!translator->load(table, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        capstan::NSLog(lcApp, "no %s: Qt's own texts stay English", qUtf8Printable(table));
        delete translator;
        return;
    }
    QCoreApplication::installTranslator(translator);
    installed = translator;
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
    installQtTable(app, code);
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

namespace {

qint64 storedLanguage(const UserDefaults &defaults)
{
    return std::clamp<qint64>(defaults.integerForKey(Keys::AppLanguage), 0, 8);
}

QString firstPreferredLanguage(const UserDefaults &defaults)
{
    const QVariant stored = defaults.objectForKey(Keys::AppleLanguages);
    if (!stored.isValid()) {
        // The desktop's interface languages: LANGUAGE, else LC_ALL, LC_MESSAGES, LANG.
        const QStringList desktop = QLocale::system().uiLanguages();
        return appleLanguageForLocale(desktop.isEmpty() ? QLocale::system().name()
                                                        : desktop.first());
    }
    // A list, as preferences are kept; a text store hands a list of one back as its text.
    const QVariantList list = defaults.arrayForKey(Keys::AppleLanguages);
    return list.isEmpty() ? stored.toString() : list.first().toString();
}

} // namespace

bool isEnglishLanguage(const UserDefaults &defaults)
{
    return storedLanguage(defaults) == 0;
}

qint64 currentLanguage(const UserDefaults &defaults)
{
    if (!defaults.boolForKey(Keys::IsLanguageChanged))
        return getSystemLanguage(defaults);
    return storedLanguage(defaults);
}

int getSystemLanguage(const UserDefaults &defaults)
{
    const QString first = firstPreferredLanguage(defaults);
    if (first.contains(QLatin1String("zh-Hans")))
        return 1;
    if (first.contains(QLatin1String("zh-Hant")))
        return 2;
    return 0;
}

QString appleLanguageForLocale(const QString &localeName)
{
    const QLocale locale(localeName);
    if (locale.language() != QLocale::Chinese)
        return locale.name().replace(QLatin1Char('_'), QLatin1Char('-'));
    return locale.script() == QLocale::TraditionalHanScript ? QStringLiteral("zh-Hant")
                                                            : QStringLiteral("zh-Hans");
}

QString languageCode(qint64 language)
{
    if (language == 1)
        return QStringLiteral("zh-Hans");
    if (language == 2)
        return QStringLiteral("zh-Hant");
    return QStringLiteral("en");
}

void setLanguage(UserDefaults &defaults)
{
    defaults.setBool(true, Keys::IsLanguageChanged);
    installLanguage(languageCode(storedLanguage(defaults)));
}

} // namespace Localization
