#include "Images.h"

#include "Log.h"

#include <QFile>
#include <QImageReader>
#include <QMutex>
#include <QSet>
#include <mutex>

void capstanInitResources()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Q_INIT_RESOURCE(capstan);
        Q_INIT_RESOURCE(capstan_translations);
    });
}

namespace {

// The resource path of an image, or empty (logged once per name) when there is none.
QString imagePath(const QString &name)
{
    capstanInitResources();
    const QString path = QStringLiteral(":/images/") + name;
    if (!name.isEmpty() && !name.contains(QLatin1Char('/')) && QFile::exists(path))
        return path;
    static QMutex mutex;
    static QSet<QString> reported;
    QMutexLocker lock(&mutex);
    if (!reported.contains(name)) {
        reported.insert(name);
        capstan::NSLog(lcApp, "no image named %s", qUtf8Printable(name));
    }
    return QString();
}

} // namespace

QIcon imageNamed(const QString &name)
{
    const QString path = imagePath(name);
    // Without a suffix QIcon recognises the SVG by its content and keeps it scalable.
    return path.isEmpty() ? QIcon() : QIcon(path);
}

QPixmap pixmapNamed(const QString &name, QSize size)
{
    const QString path = imagePath(name);
    if (path.isEmpty())
        return QPixmap();
    QImageReader reader(path);
    // Like an image in a button: as large as fits, never stretched out of its proportions.
    const QSize own = reader.size();
    if (!size.isEmpty() && own.isValid())
        reader.setScaledSize(own.scaled(size, Qt::KeepAspectRatio));
    QImage image = reader.read();
    if (image.isNull()) {
        capstan::NSLog(lcApp, "cannot draw the image %s: %s", qUtf8Printable(name),
                       qUtf8Printable(reader.errorString()));
        return QPixmap();
    }
    return QPixmap::fromImage(std::move(image));
}
