// A test pattern for the end-to-end tests: a frameless window at x, y of the desktop, w x h,
// in four quadrants none like another nor a mirror of another (red, green / blue, white).
// Usage: capstan_e2e_pattern X Y W H [COLOUR]; with a colour the window is that colour alone
// (a window to cover another with).
// capstan_e2e_pattern --clipboard prints the clipboard's picture as "W H R G B" (its size and
// the colour at its centre), or "none".
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QPainter>
#include <QWidget>
#include <cstdio>

namespace {

class Pattern : public QWidget {
public:
    QColor solid;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        if (solid.isValid()) {
            painter.fillRect(rect(), solid);
            return;
        }
        const int w = width() / 2, h = height() / 2;
        painter.fillRect(0, 0, w, h, Qt::red);
        painter.fillRect(w, 0, width() - w, h, Qt::green);
        painter.fillRect(0, h, w, height() - h, Qt::blue);
        painter.fillRect(w, h, width() - w, height() - h, Qt::white);
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 2 && args[1] == QStringLiteral("--clipboard")) {
        const QImage image = QApplication::clipboard()->image();
        if (image.isNull()) {
            std::puts("none");
        } else {
            const QColor c = image.pixelColor(image.width() / 2, image.height() / 2);
            std::printf("%d %d %d %d %d\n", image.width(), image.height(), c.red(), c.green(),
                        c.blue());
        }
        return 0;
    }
    if (args.size() != 5 && args.size() != 6)
        return 2;
    Pattern pattern;
    if (args.size() == 6)
        pattern.solid = QColor(args[5]);
    pattern.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    pattern.setWindowTitle(args.size() == 6 ? QStringLiteral("capstan-cover")
                                            : QStringLiteral("capstan-pattern"));
    pattern.setGeometry(args[1].toInt(), args[2].toInt(), args[3].toInt(), args[4].toInt());
    pattern.show();
    return app.exec();
}
