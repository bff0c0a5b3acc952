#pragma once
// The program's images, by name: the SVG files compiled in under ":/images/<name>".
// A name that isn't there is logged once and gives a null icon or pixmap.
// Drawing needs a QGuiApplication; call these from the main thread.
#include <QIcon>
#include <QPixmap>
#include <QSize>
#include <QString>

// Registers the compiled-in images and string tables. They live in a static library, whose
// resources the linker would drop unless something refers to them. Safe to call repeatedly.
void capstanInitResources();

QIcon imageNamed(const QString &name);
// The image drawn as large as fits in size, keeping its proportions (at its own size if size
// is empty), or null.
QPixmap pixmapNamed(const QString &name, QSize size);
