// render-icon SVG SIZE PNG: draws the program's SVG icon into a SIZE x SIZE PNG, for the
// hicolor theme's fixed sizes (menus and docks that take no SVG). A build step, run by CMake.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <cstdlib>

int main(int argc, char *argv[])
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: render-icon SVG SIZE PNG\n");
        return 2;
    }
    const int size = std::atoi(argv[2]);
    QSvgRenderer renderer{QString::fromLocal8Bit(argv[1])};
    if (!renderer.isValid() || size <= 0) {
        std::fprintf(stderr, "render-icon: cannot draw %s at size %s\n", argv[1], argv[2]);
        return 1;
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "render-icon: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}
