// A full-screen window whose whole picture moves every frame (at the rate given as the
// first argument, 30 by default): the worst case for a screen recorder's encoder.
#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <cstdlib>

class MovingPattern : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        const int w = width(), h = height();
        for (int y = 0; y < h; y += 60)
            for (int x = 0; x < w; x += 80) {
                const int v = (x * 7 + y * 13 + tick * 9) % 255;
                p.fillRect(x, y, 80, 60, QColor::fromHsv((v + tick) % 360, 200, 80 + v / 2));
            }
        p.setPen(Qt::white);
        p.setFont(QFont("Sans", 48));
        p.drawText(QRect(0, 0, w, h), Qt::AlignCenter, QString::number(tick));
    }

public:
    int tick = 0;
};

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    MovingPattern window;
    window.setFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setGeometry(QGuiApplication::primaryScreen()->virtualGeometry());
    window.show();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, [&] {
        ++window.tick;
        window.update();
    });
    const int fps = argc > 1 ? std::max(1, atoi(argv[1])) : 30;
    timer.setTimerType(Qt::PreciseTimer);
    timer.start(1000 / fps);
    return app.exec();
}
