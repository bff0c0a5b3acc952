// The road to every text: the built-in English before any table, the tables once installed,
// the choice of language, and, read from the sources as they stand, every key the program uses
// with its text in each of the three tables, and no text that nothing uses.
#include "Localization.h"
#include "FakePorts.h"
#include "Images.h"
#include "LogCapture.h"
#include "SettingsKeys.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>
#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>

// Texts in failure messages as texts.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

using Localization::installLanguage;
using Localization::localizedStringForKey;

namespace {

bool aTableIsInstalled()
{
    return qtTrId("Main_Full_Screen") != QLatin1String("Main_Full_Screen");
}

const QStringList kLanguages{QStringLiteral("en"), QStringLiteral("zh-Hans"),
                             QStringLiteral("zh-Hant")};

// A compiled table on its own, not installed: an id it lacks gives an empty text.
class Table {
public:
    explicit Table(const QString &code = QStringLiteral("en"))
    {
        capstanInitResources();
        loaded_ = translator_.load(QStringLiteral(":/translations/capstan_%1.qm").arg(code));
    }
    bool loaded() const { return loaded_; }
    QString text(const QString &key) const
    {
        return translator_.translate(nullptr, key.toUtf8().constData());
    }

private:
    QTranslator translator_;
    bool loaded_ = false;
};

struct Message {
    QString id;
    QString source;
    QString translation;
    QString type;
};

// The messages of a language's .ts as written.
QList<Message> messagesOfTheTable(const QString &code = QStringLiteral("en"))
{
    QFile file(QStringLiteral(CAPSTAN_TRANSLATIONS "/capstan_%1.ts").arg(code));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<Message> messages;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement ||
            xml.name() != QLatin1String("message"))
            continue;
        Message message;
        message.id = xml.attributes().value(QLatin1String("id")).toString();
        while (xml.readNextStartElement()) {
            if (xml.name() == QLatin1String("source")) {
                message.source = xml.readElementText();
            } else if (xml.name() == QLatin1String("translation")) {
                message.type = xml.attributes().value(QLatin1String("type")).toString();
                message.translation = xml.readElementText();
            } else {
                xml.skipCurrentElement();
            }
        }
        messages.append(message);
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return messages;
}

QStringList idsOfTheTable(const QString &code = QStringLiteral("en"))
{
    QStringList ids;
    for (const Message &message : messagesOfTheTable(code))
        ids.append(message.id);
    return ids;
}

// Literal texts of the program's sources that name table entries, each with the first file
// that holds it: those handed to a lookup, and, since windows also keep keys in lists and pass
// them on, every literal of a key family ("Main_…", "Alert_…": a prefix up to "_" that two or
// more ids of the table share) or of a tool tip ("….toolTip").
struct SourceTexts {
    QHash<QString, QString> keys;
    QHash<QString, QString> trTexts; // QObject::tr
    QSet<QString> literals;          // every literal text
    int files = 0;
};

QSet<QString> keyFamilies(const QStringList &ids)
{
    QHash<QString, int> members;
    for (const QString &id : ids) {
        const qsizetype end = id.indexOf(QLatin1Char('_'));
        if (end > 0)
            ++members[id.left(end + 1)];
    }
    QSet<QString> families;
    for (auto it = members.cbegin(); it != members.cend(); ++it) {
        if (it.value() >= 2)
            families.insert(it.key());
    }
    return families;
}

SourceTexts scanSources(const QStringList &ids)
{
    static const QRegularExpression keyCall(
        QStringLiteral(R"re(\b(?:localizedStringForKey|qtTrId|QT_TRID_NOOP)\(\s*)re"
                       R"re((?:QStringLiteral\(\s*|QLatin1String\(\s*)?"((?:[^"\\]|\\.)*)")re"));
    static const QRegularExpression trCall(QStringLiteral(R"re(\btr\(\s*"((?:[^"\\]|\\.)*)")re"));
    static const QRegularExpression keyLiteral(QStringLiteral(R"re("([A-Za-z][\w&.%]*)")re"));
    static const QRegularExpression anyLiteral(QStringLiteral(R"re("((?:[^"\\\n]|\\.)*)")re"));
    const QSet<QString> families = keyFamilies(ids);
    SourceTexts found;
    QDirIterator files(QStringLiteral(CAPSTAN_SOURCE_TREE), {"*.cpp", "*.h"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        ++found.files;
        const QString text = QString::fromUtf8(file.readAll());
        for (const QRegularExpressionMatch &match : keyCall.globalMatch(text))
            found.keys.insert(match.captured(1), path);
        for (const QRegularExpressionMatch &match : trCall.globalMatch(text))
            found.trTexts.insert(match.captured(1), path);
        for (const QRegularExpressionMatch &match : anyLiteral.globalMatch(text))
            found.literals.insert(match.captured(1));
        for (const QRegularExpressionMatch &match : keyLiteral.globalMatch(text)) {
            const QString literal = match.captured(1);
            const qsizetype end = literal.indexOf(QLatin1Char('_'));
            if ((end > 0 && families.contains(literal.left(end + 1))) ||
                literal.endsWith(QLatin1String(".toolTip")))
                found.keys.insert(literal, path);
        }
    }
    return found;
}

// The keys read before any table is installed, which have a built-in English text.
const QStringList kEarlyKeys{
    QStringLiteral("Meun_App"),
    QStringLiteral("Main_Fram_Original_Quality"),
    QStringLiteral("Main_Fram_HD_Quality"),
    QStringLiteral("Main_Fram_SD_Quality"),
    QStringLiteral("Alert_Title"),
    QStringLiteral("Alert_Mic_Message"),
    QStringLiteral("Alert_DisAble_Message"),
};

} // namespace

// First in this file: it needs a process in which no table was installed yet (ctest runs each
// case in a process of its own).
TEST(Localization, BuiltInEnglishServesUntilTheTableIsInstalledAndTheTableKeepsIt)
{
    if (aTableIsInstalled())
        GTEST_SKIP() << "an earlier case of this process installed a table";
    QHash<QString, QString> before;
    for (const QString &key : kEarlyKeys) {
        before.insert(key, localizedStringForKey(key));
        EXPECT_NE(before.value(key), key) << key.toStdString();
    }
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_Full_Screen")), "Main_Full_Screen");

    installLanguage(QStringLiteral("en"));
    ASSERT_TRUE(aTableIsInstalled());
    for (const QString &key : kEarlyKeys)
        EXPECT_EQ(localizedStringForKey(key), before.value(key)) << key.toStdString();
}

TEST(Localization, TheEnglishTableGivesItsTextsAndUnknownKeysThemselves)
{
    installLanguage(QStringLiteral("en"));
    const QList<std::pair<QString, QString>> cases{
        {QStringLiteral("Main_Full_Screen"), QStringLiteral("Full Screen")},
        {QStringLiteral("Main_Audio_System&Micphone"), QStringLiteral("System Audio & Microphone")},
        {QStringLiteral("SelectCaptrue"), QStringLiteral("Select Camera")},
        {QStringLiteral("Menu_Edit_Captrue"), QStringLiteral("Camera On/Off")},
        {QStringLiteral("hideMain"), QStringLiteral("Hide Capstan")},
        {QStringLiteral("FileList_OpenDir"), QStringLiteral("Show in Folder")},
        {QStringLiteral("HelpUrl"), QStringLiteral("https://capstan.org/help")},
        {QStringLiteral("No_Such_Key"), QStringLiteral("No_Such_Key")},
        {QString(), QString()},
    };
    for (const auto &[key, text] : cases)
        EXPECT_EQ(localizedStringForKey(key), text) << key.toStdString();

    const QString folder = QStringLiteral("/home/someone/Videos/Capstan");
    const QString message =
        localizedStringForKey(QStringLiteral("Alert_OutputFolder_Message")).arg(folder);
    EXPECT_TRUE(message.contains(folder)) << message.toStdString();
}

TEST(Localization, ALanguageWithoutATableGetsEnglishAndEachInstallReplacesTheLast)
{
    LogCapture log;
    installLanguage(QStringLiteral("xx-Nowhere"));
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_On")), "On");
    EXPECT_TRUE(log.contains(QStringLiteral("no language table for xx-Nowhere; English instead")));

    installLanguage(QStringLiteral("en"));
    installLanguage(QStringLiteral("en"));
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_Off")), "Off");
    EXPECT_EQ(QCoreApplication::instance()->findChildren<QTranslator *>().size(), 1);
}

TEST(Localization, EveryKeyTheSourcesUseHasItsTextInEveryLanguage)
{
    const QStringList ids = idsOfTheTable();
    const SourceTexts sources = scanSources(ids);
    ASSERT_GT(sources.files, 0) << "no sources under " CAPSTAN_SOURCE_TREE;
    ASSERT_FALSE(sources.keys.isEmpty()) << "no text lookups found in " CAPSTAN_SOURCE_TREE;
    for (const QString &code : kLanguages) {
        const Table table(code);
        ASSERT_TRUE(table.loaded()) << code.toStdString();
        for (auto it = sources.keys.cbegin(); it != sources.keys.cend(); ++it) {
            const QString &key = it.key();
            SCOPED_TRACE(code.toStdString() + ": " + key.toStdString() + " in " +
                         it.value().toStdString());
            const qsizetype placeholder = key.indexOf(QLatin1Char('%'));
            if (placeholder >= 0) {
                // A key made at run time ("ID_MENU_STOPRECORD_%1"): its family must exist.
                const QString stem = key.left(placeholder);
                EXPECT_TRUE(std::any_of(ids.cbegin(), ids.cend(),
                                        [&](const QString &id) { return id.startsWith(stem); }));
                continue;
            }
            EXPECT_FALSE(table.text(key).isEmpty());
        }
        // The stop menu names its five items by a pattern, which no scan sees whole.
        for (int item = 0; item < 5; ++item) {
            const QString key = QStringLiteral("ID_MENU_STOPRECORD_%1").arg(item);
            EXPECT_FALSE(table.text(key).isEmpty())
                << code.toStdString() << " " << key.toStdString();
        }
    }
}

TEST(Localization, TheThreeTablesHoldTheSameKeysAndNoneThatNothingUses)
{
    const QStringList ids = idsOfTheTable();
    for (const QString &code : kLanguages)
        EXPECT_EQ(idsOfTheTable(code), ids) << code.toStdString();

    const SourceTexts sources = scanSources(ids);
    ASSERT_GT(sources.files, 0);
    // Patterns in the sources ("ID_MENU_STOPRECORD_%1") stand for the keys they make.
    QStringList stems;
    for (const QString &literal : sources.literals) {
        const qsizetype placeholder = literal.indexOf(QLatin1Char('%'));
        if (placeholder > 0)
            stems.append(literal.left(placeholder));
    }
    for (const QString &id : ids) {
        // An image button's name is the key of its image ("btnStartRecrord_Normal").
        const bool used = sources.literals.contains(id) ||
                          sources.literals.contains(id + QStringLiteral("_Normal")) ||
                          std::any_of(stems.cbegin(), stems.cend(), [&](const QString &stem) {
                              bool number = false;
                              id.mid(stem.size()).toInt(&number);
                              return id.startsWith(stem) && number;
                          });
        EXPECT_TRUE(used) << id.toStdString()
                          << " is in the tables but not in " CAPSTAN_SOURCE_TREE;
    }
}

TEST(Localization, TheChineseTablesAreFinishedAndInChinese)
{
    const QList<Message> english = messagesOfTheTable();
    for (const QString &code : {QStringLiteral("zh-Hans"), QStringLiteral("zh-Hant")}) {
        const QList<Message> messages = messagesOfTheTable(code);
        ASSERT_EQ(messages.size(), english.size()) << code.toStdString();
        int chinese = 0;
        for (qsizetype i = 0; i < messages.size(); ++i) {
            SCOPED_TRACE(code.toStdString() + ": " + messages.at(i).id.toStdString());
            EXPECT_EQ(messages.at(i).source, english.at(i).source) << "the English source";
            EXPECT_FALSE(messages.at(i).translation.isEmpty());
            EXPECT_TRUE(messages.at(i).type.isEmpty())
                << "marked " << messages.at(i).type.toStdString();
            const QString &text = messages.at(i).translation;
            if (std::any_of(text.cbegin(), text.cend(),
                            [](QChar c) { return c.script() == QChar::Script_Han; }))
                ++chinese;
        }
        // Names, addresses and the language menu's English stay as they are; the rest is Chinese.
        EXPECT_GT(chinese, messages.size() * 9 / 10) << code.toStdString();
    }
    // The two Chinese tables are not one table twice.
    const Table simplified(QStringLiteral("zh-Hans"));
    const Table traditional(QStringLiteral("zh-Hant"));
    EXPECT_EQ(simplified.text(QStringLiteral("Main_Full_Screen")), QStringLiteral("全屏"));
    EXPECT_NE(simplified.text(QStringLiteral("FileList_OpenDir")),
              traditional.text(QStringLiteral("FileList_OpenDir")));
}

TEST(Localization, TheLanguageIsTheStoredChoiceOrUntilOneIsMadeTheSystems)
{
    FakeUserDefaults defaults;
    const auto language = [&] { return Localization::currentLanguage(defaults); };
    // No choice made: "AppLanguage" is ignored, the preferred languages decide.
    defaults.setInteger(1, Keys::AppLanguage);
    defaults.setObject(QStringList{QStringLiteral("zh-Hant-TW"), QStringLiteral("en")},
                       Keys::AppleLanguages);
    EXPECT_EQ(language(), 2);
    // A text store hands a list of one back as text.
    defaults.setObject(QStringLiteral("zh-Hans-CN"), Keys::AppleLanguages);
    EXPECT_EQ(language(), 1);
    // What the menu writes for Chinese ("zh_CN") is no "zh-Hans": after a choice it is not read.
    defaults.setObject(QStringList{QStringLiteral("zh_CN")}, Keys::AppleLanguages);
    EXPECT_EQ(language(), 0);

    defaults.setBool(true, Keys::IsLanguageChanged);
    defaults.setInteger(2, Keys::AppLanguage);
    EXPECT_EQ(language(), 2);
    defaults.setInteger(9, Keys::AppLanguage);
    EXPECT_EQ(language(), 8);
    EXPECT_EQ(Localization::languageCode(language()), "en");
    EXPECT_FALSE(Localization::isEnglishLanguage(defaults));
    defaults.setInteger(-4, Keys::AppLanguage);
    EXPECT_EQ(language(), 0);
    EXPECT_TRUE(Localization::isEnglishLanguage(defaults));
}

TEST(Localization, TheDesktopsLocaleNamesItsChinese)
{
    const QList<std::pair<QString, QString>> cases{
        {QStringLiteral("zh_CN"), QStringLiteral("zh-Hans")},
        {QStringLiteral("zh_SG"), QStringLiteral("zh-Hans")},
        {QStringLiteral("zh_TW"), QStringLiteral("zh-Hant")},
        {QStringLiteral("zh_HK"), QStringLiteral("zh-Hant")},
        {QStringLiteral("zh_MO"), QStringLiteral("zh-Hant")},
        {QStringLiteral("zh-TW"), QStringLiteral("zh-Hant")},
        {QStringLiteral("zh"), QStringLiteral("zh-Hans")},
        {QStringLiteral("en_US"), QStringLiteral("en-US")},
        {QStringLiteral("de_DE"), QStringLiteral("de-DE")},
    };
    for (const auto &[locale, preferred] : cases)
        EXPECT_EQ(Localization::appleLanguageForLocale(locale), preferred) << locale.toStdString();
}

TEST(Localization, ChoosingALanguageInstallsItsTableAndMarksTheChoice)
{
    FakeUserDefaults defaults;
    defaults.setInteger(1, Keys::AppLanguage);
    Localization::setLanguage(defaults);
    EXPECT_TRUE(defaults.boolForKey(Keys::IsLanguageChanged));
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_Full_Screen")), "全屏");
    defaults.setInteger(2, Keys::AppLanguage);
    Localization::setLanguage(defaults);
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_Full_Screen")),
              Table(QStringLiteral("zh-Hant")).text(QStringLiteral("Main_Full_Screen")));
    defaults.setInteger(-1, Keys::AppLanguage);
    Localization::setLanguage(defaults);
    EXPECT_EQ(localizedStringForKey(QStringLiteral("Main_Full_Screen")), "Full Screen");
}

TEST(Localization, TextsGivenToTrAreNoKeys)
{
    // tr() looks up in its class's context, which an id-based table doesn't have: a key
    // given to it would show as the key itself.
    const Table table;
    ASSERT_TRUE(table.loaded());
    const QStringList ids = idsOfTheTable();
    const SourceTexts sources = scanSources(ids);
    for (auto it = sources.trTexts.cbegin(); it != sources.trTexts.cend(); ++it)
        EXPECT_TRUE(table.text(it.key()).isEmpty())
            << it.key().toStdString() << " in " << it.value().toStdString()
            << ": use localizedStringForKey";
}

TEST(Localization, EveryMessageOfTheTableIsFinishedEnglishAndCompiledIn)
{
    const Table table;
    ASSERT_TRUE(table.loaded());
    const QList<Message> messages = messagesOfTheTable();
    ASSERT_FALSE(messages.isEmpty());
    QSet<QString> seen;
    for (const Message &message : messages) {
        SCOPED_TRACE(message.id.toStdString());
        ASSERT_FALSE(message.id.isEmpty()) << "a message without an id is dropped by lrelease";
        EXPECT_FALSE(seen.contains(message.id)) << "twice in the table";
        seen.insert(message.id);
        EXPECT_FALSE(message.source.isEmpty());
        EXPECT_EQ(message.translation, message.source);
        EXPECT_TRUE(message.type.isEmpty()) << "marked " << message.type.toStdString();
        EXPECT_EQ(table.text(message.id), message.source);
    }
}
