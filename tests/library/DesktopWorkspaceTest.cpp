// The desktop's Workspace adapter against a D-Bus daemon of the test's own, with a file
// manager of the test's own on it (or none), and the desktop's URL opening intercepted.
#include "DesktopWorkspace.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDesktopServices>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <gtest/gtest.h>

namespace {

class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    QList<QStringList> shown;
    QStringList startupIds;
public slots:
    void ShowItems(const QStringList &uris, const QString &startupId)
    {
        shown.append(uris);
        startupIds.append(startupId);
    }
};

// What the desktop was asked to open.
class UrlRecorder : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void openUrl(const QUrl &url) { urls.append(url); }
};

class DesktopWorkspaceTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        const QString daemon = QStandardPaths::findExecutable("dbus-daemon");
        if (daemon.isEmpty())
            return;
        busDir = new QTemporaryDir;
        QFile config(busDir->filePath("bus.conf"));
        if (!config.open(QIODevice::WriteOnly))
            return;
        // No service directories: nothing is started on demand, so "no file manager" holds.
        config.write(QStringLiteral(R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)")
                         .arg(busDir->path())
                         .toUtf8());
        config.close();
        bus = new QProcess;
        bus->start(daemon, {"--config-file=" + config.fileName(), "--print-address=1", "--nofork",
                            "--nopidfile"});
        if (!bus->waitForStarted() || !bus->waitForReadyRead(10000))
            return;
        address = QString::fromUtf8(bus->readLine()).trimmed();
        // Read by the session connection at its first use, which comes after this.
        qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    }
    static void TearDownTestSuite()
    {
        if (bus) {
            bus->kill();
            bus->waitForFinished();
        }
        delete bus;
        delete busDir;
        bus = nullptr;
        busDir = nullptr;
    }
    void SetUp() override
    {
        if (address.isEmpty())
            GTEST_SKIP() << "no dbus-daemon to run a bus of the test's own";
        ASSERT_TRUE(QDBusConnection::sessionBus().isConnected());
        QDesktopServices::setUrlHandler("file", &desktop, "openUrl");
        ASSERT_TRUE(QDir().mkpath(dir.filePath("My Videos/Capstan")));
        file = dir.filePath("My Videos/Capstan/été 1.mp4");
    }
    void TearDown() override
    {
        QDesktopServices::unsetUrlHandler("file");
        if (fileManagerConnected) {
            QDBusConnection connection(QStringLiteral("filemanager"));
            connection.unregisterObject("/org/freedesktop/FileManager1");
            connection.unregisterService("org.freedesktop.FileManager1");
            QDBusConnection::disconnectFromBus(QStringLiteral("filemanager"));
        }
    }
    void startFileManager()
    {
        QDBusConnection connection =
            QDBusConnection::connectToBus(address, QStringLiteral("filemanager"));
        ASSERT_TRUE(connection.isConnected());
        fileManagerConnected = true;
        ASSERT_TRUE(connection.registerObject("/org/freedesktop/FileManager1", &fileManager,
                                              QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(connection.registerService("org.freedesktop.FileManager1"));
    }

    static inline QTemporaryDir *busDir = nullptr;
    static inline QProcess *bus = nullptr;
    static inline QString address;
    QTemporaryDir dir;
    QString file;
    UrlRecorder desktop;
    FakeFileManager fileManager;
    bool fileManagerConnected = false;
    DesktopWorkspace workspace;
};

TEST_F(DesktopWorkspaceTest, FilesOpenInTheDesktopsApplication)
{
    EXPECT_TRUE(workspace.openFile(file, false));
    EXPECT_TRUE(workspace.openFile(file, true));
    ASSERT_EQ(desktop.urls.size(), 2);
    for (const QUrl &url : desktop.urls) {
        EXPECT_TRUE(url.isLocalFile());
        EXPECT_EQ(url.toLocalFile(), file);
    }
}

TEST_F(DesktopWorkspaceTest, TheFileManagerIsAskedToShowTheItem)
{
    startFileManager();
    workspace.selectFile(file);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !fileManager.shown.isEmpty(); }, 5000));
    // One item, as an encoded URI, and no startup id.
    const QString uri = "file://" + QString::fromUtf8(QUrl::toPercentEncoding(file, "/"));
    EXPECT_EQ(fileManager.shown.first(), QStringList{uri});
    EXPECT_EQ(fileManager.startupIds.first(), "");
    // The answer came: the folder is not opened besides.
    QTest::qWait(200);
    EXPECT_TRUE(desktop.urls.isEmpty());
    EXPECT_EQ(fileManager.shown.size(), 1);
}

TEST_F(DesktopWorkspaceTest, WithoutAFileManagerTheFolderOpens)
{
    ASSERT_FALSE(QDBusConnection::sessionBus().interface()->isServiceRegistered(
        "org.freedesktop.FileManager1"));
    workspace.selectFile(file);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !desktop.urls.isEmpty(); }, 5000));
    EXPECT_EQ(desktop.urls, QList<QUrl>{QUrl::fromLocalFile(dir.filePath("My Videos/Capstan"))});
}

} // namespace

#include "DesktopWorkspaceTest.moc"
