#pragma once
// The tool buttons' tip: a plain label, centred black text at 12 on light grey.
#include <QLabel>

class XJLabel : public QLabel {
    Q_OBJECT
public:
    explicit XJLabel(QWidget *parent = nullptr);

    static QColor backgroundColor();
    // One of the system's points is one pixel at scale 1.
    static constexpr int kFontSize = 12;
};
