// The road to every text: the built-in English before any table, the English table once
// installed, and, read from the sources as they stand, every key the program uses with its
// English text in the table.
#include "Localization.h"
#include "Images.h"
#include "LogCapture.h"

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

// The compiled English table on its own, not installed: an id it lacks gives an empty text.
class EnglishTable {
public:
    EnglishTable()
    {
        capstanInitResources();
        loaded_ = translator_.load(QStringLiteral(":/translations/capstan_en.qm"));
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

// The messages of the English .ts as written.
QList<Message> messagesOfTheTable()
{
    QFile file(QStringLiteral(CAPSTAN_ENGLISH_TS));
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

QStringList idsOfTheTable()
{
    QStringList ids;
    for (const Message &message : messagesOfTheTable())
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

TEST(Localization, EveryKeyTheSourcesUseHasItsEnglishText)
{
    const EnglishTable table;
    ASSERT_TRUE(table.loaded());
    const QStringList ids = idsOfTheTable();

    const SourceTexts sources = scanSources(ids);
    ASSERT_GT(sources.files, 0) << "no sources under " CAPSTAN_SOURCE_TREE;
    ASSERT_FALSE(sources.keys.isEmpty()) << "no text lookups found in " CAPSTAN_SOURCE_TREE;
    for (auto it = sources.keys.cbegin(); it != sources.keys.cend(); ++it) {
        const QString &key = it.key();
        SCOPED_TRACE(key.toStdString() + " in " + it.value().toStdString());
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
        EXPECT_FALSE(table.text(key).isEmpty()) << key.toStdString();
    }
}

TEST(Localization, TextsGivenToTrAreNoKeys)
{
    // tr() looks up in its class's context, which an id-based table doesn't have: a key
    // given to it would show as the key itself.
    const EnglishTable table;
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
    const EnglishTable table;
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
