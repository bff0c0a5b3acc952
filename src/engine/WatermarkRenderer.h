#pragma once
// Text and logo pictures for watermarks. Safe on any thread while a QGuiApplication
// exists (fonts need it).
#include "RecordSessionHost.h"

#include <QFont>
#include <QImage>
#include <QSizeF>

namespace WatermarkRenderer {

// The font of the style; the system font when the name is empty or unknown. Its size is
// the style's point size taken as pixels (rounded), whatever the screen's resolution.
QFont fontFor(const TextWatermarkStyle &style);
// The size a text needs, broken into lines at the limit's width; 0 by 0 for a null text.
QSizeF measure(const QString &text, const TextWatermarkStyle &style, const QSizeF &limit);
// The text in the style's font and colour at the style's alpha, on a transparent image
// of the measured size (limit 1080 x 1080). Null for a null or empty text.
QImage imageWithText(const QString &text, const TextWatermarkStyle &style);
// A plate of size filled with dark grey at 0.75 alpha and the logo fitted, centred,
// into four fifths of it.
QImage logoPlate(const QSizeF &size, const QImage &logo);
// A date pattern of the time-stamp styles ("YYYY-MM-dd HH:mm") as a Qt date format.
QString qtDateFormat(const QString &pattern);

} // namespace WatermarkRenderer
