// The compiled-in images: every entry of the resource list is reached by its name alone and
// draws through QtSvg, a hovered image is its normal one in another colour, and an unknown
// name gives nothing and says so once.
#include "Images.h"
#include "LogCapture.h"

#include <QFile>
#include <QImage>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace {

struct ImageEntry {
    QString name; // the alias, which is the name the windows ask for
    QString file;
};

QList<ImageEntry> imagesOfTheResourceFile()
{
    QFile file(QStringLiteral(CAPSTAN_IMAGES_QRC));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QList<ImageEntry> entries;
    QString prefix;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("qresource")) {
            prefix = xml.attributes().value(QLatin1String("prefix")).toString();
        } else if (xml.name() == QLatin1String("file")) {
            const QString alias = xml.attributes().value(QLatin1String("alias")).toString();
            const QString path = xml.readElementText();
            if (prefix == QLatin1String("/images"))
                entries.append({alias, path});
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return entries;
}

int paintedPixels(const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    int painted = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            painted += qAlpha(line[x]) > 0 ? 1 : 0;
    }
    return painted;
}

const QSize kSize(64, 64);
// A drawing that covers less than this share of the square has lost its shapes.
constexpr int kFewestPainted = 64 * 64 / 50;

} // namespace

TEST(Images, EveryImageOfTheResourceFileDrawsByItsNameAt64)
{
    const QList<ImageEntry> entries = imagesOfTheResourceFile();
    ASSERT_FALSE(entries.isEmpty()) << "no images under /images in " CAPSTAN_IMAGES_QRC;
    for (const ImageEntry &entry : entries) {
        SCOPED_TRACE(entry.name.toStdString());
        EXPECT_EQ(entry.file.toStdString(), ("images/" + entry.name + ".svg").toStdString());

        const QPixmap pixmap = pixmapNamed(entry.name, kSize);
        ASSERT_FALSE(pixmap.isNull());
        EXPECT_TRUE(pixmap.size() == kSize);
        EXPECT_GE(paintedPixels(pixmap.toImage()), kFewestPainted);

        const QIcon icon = imageNamed(entry.name);
        ASSERT_FALSE(icon.isNull());
        const QPixmap drawn = icon.pixmap(kSize);
        ASSERT_FALSE(drawn.isNull());
        EXPECT_GE(paintedPixels(drawn.toImage()), kFewestPainted);
    }
}

TEST(Images, AHoveredImageIsItsNormalOneInAnotherColour)
{
    const QList<ImageEntry> entries = imagesOfTheResourceFile();
    QStringList names;
    for (const ImageEntry &entry : entries)
        names.append(entry.name);
    int pairs = 0;
    for (const QString &name : names) {
        if (!name.endsWith(QLatin1String("_On")))
            continue;
        SCOPED_TRACE(name.toStdString());
        const QString normal = name.chopped(3) + QStringLiteral("_Normal");
        ASSERT_TRUE(names.contains(normal)) << "no " << normal.toStdString();
        const QImage hovered = pixmapNamed(name, kSize).toImage();
        const QImage plain = pixmapNamed(normal, kSize).toImage();
        EXPECT_FALSE(hovered == plain) << "the two states look the same";
        EXPECT_TRUE(hovered.convertToFormat(QImage::Format_Alpha8) ==
                    plain.convertToFormat(QImage::Format_Alpha8))
            << "the two states differ in shape, not only in colour";
        ++pairs;
    }
    EXPECT_GT(pairs, 0);
}

TEST(Images, AnImageFitsTheSizeAskedForInItsOwnProportions)
{
    const QString record = QStringLiteral("btnStartRecrord_Normal");
    EXPECT_TRUE(pixmapNamed(record, QSize()).size() == QSize(56, 56));
    EXPECT_TRUE(pixmapNamed(QStringLiteral("icon_18"), QSize()).size() == QSize(18, 18));
    // A round button stays round in a tall frame.
    EXPECT_TRUE(pixmapNamed(record, QSize(112, 140)).size() == QSize(112, 112));
    EXPECT_TRUE(pixmapNamed(record, QSize(48, 30)).size() == QSize(30, 30));
}

TEST(Images, AnUnknownNameGivesNothingAndIsLoggedOnce)
{
    LogCapture log;
    const QString unknown = QStringLiteral("btnNoSuchImage_Normal");
    EXPECT_TRUE(imageNamed(unknown).isNull());
    EXPECT_TRUE(pixmapNamed(unknown, QSize(24, 24)).isNull());
    EXPECT_TRUE(imageNamed(unknown).isNull());
    EXPECT_EQ(log.count(QStringLiteral("no image named btnNoSuchImage_Normal")), 1);
    // A path is no name: the other resources stay out of reach.
    EXPECT_TRUE(imageNamed(QStringLiteral("../translations/capstan_en.qm")).isNull());
    EXPECT_TRUE(imageNamed(QString()).isNull());
}
