#pragma once
// What draws a TNButton's title and image: the title in one colour, each in its frame moved by
// insets of its own.
#include <QColor>
#include <QFont>
#include <QPixmap>
#include <QRectF>
#include <QString>

class QPainter;

// Four insets: top, left, bottom, right, in points.
struct NSEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    friend bool operator==(const NSEdgeInsets &, const NSEdgeInsets &) = default;
};

// The frame changed by insets: x + left, y + top, w - (right - left), h - (bottom - top).
// Width and height change by differences, not sums, as the buttons were always laid out.
QRectF frameByInsets(const QRectF &frame, const NSEdgeInsets &insets);

class TNButtonCell {
public:
    // The title's colour; an invalid colour stands for none (grey 0.533 is drawn then).
    QColor textColor() const { return textColor_; }
    void setTextColor(const QColor &color) { textColor_ = color; }
    NSEdgeInsets texteEdgeInsets() const { return texteEdgeInsets_; }
    void setTexteEdgeInsets(const NSEdgeInsets &insets) { texteEdgeInsets_ = insets; }
    NSEdgeInsets imageEdgeInsets() const { return imageEdgeInsets_; }
    void setImageEdgeInsets(const NSEdgeInsets &insets) { imageEdgeInsets_ = insets; }

    // The colour the title is drawn in.
    QColor titleColor() const;
    static QColor defaultTitleColor();

    // Both answer the frame they drew in (widget coordinates, y down as in a button).
    QRectF drawTitle(QPainter &painter, const QString &title, const QFont &font,
                     const QRectF &frame) const;
    QRectF drawImage(QPainter &painter, const QPixmap &image, const QRectF &frame) const;

private:
    QColor textColor_;
    NSEdgeInsets texteEdgeInsets_;
    NSEdgeInsets imageEdgeInsets_;
};
