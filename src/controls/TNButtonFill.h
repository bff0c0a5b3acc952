#pragma once
// What a TNButton fills behind its title and image, by the first rule that fits:
//   1. canMouseCustomColor, pointer inside: a cyan-to-blue gradient, and the layer's background
//      turns light grey for good;
//   2. canMouseCustomColor, pointer outside: the window background colour;
//   3. isMouseColor, and the pointer inside or the button on: the selection colour, over a
//      rectangle 2 points taller than the button (the extra is cut at the edge);
//   4. nothing.
// Pure, so it is tested without a display.
#include <QBrush>
#include <QColor>
#include <QRectF>
#include <QSizeF>

struct TNButtonState {
    QSizeF size;
    bool canMouseCustomColor = false;
    bool isMouseColor = false;
    bool isEntered = false;
    // The button is on (state 1).
    bool isOn = false;
};

struct TNButtonFill {
    enum class Kind { None, Solid, Gradient };
    Kind kind = Kind::None;
    // In widget coordinates, y down as in a button.
    QRectF rect;
    QColor color;
    // At angle 90: from the start colour at the bottom to the end colour at the top.
    QColor gradientStart;
    QColor gradientEnd;
    // Rule 1 also turns the layer's background light grey; it stays so afterwards.
    bool setsLightGrayBackground = false;

    // What to fill the rectangle with: the colour, or the gradient over the rectangle.
    QBrush brush() const;
};

TNButtonFill tnButtonFill(const TNButtonState &state);

namespace TNButtonColors {
QColor hoverGradientStart();
QColor hoverGradientEnd();
QColor windowBackground();
QColor selection();
// The platform's lightGrayColor, grey 2/3.
QColor lightGray();
} // namespace TNButtonColors
