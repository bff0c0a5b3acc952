#include "VideoCell.h"

#include "VideoCellText.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <chrono>

double wallClockNow()
{
    using namespace std::chrono;
    return double(duration_cast<microseconds>(system_clock::now().time_since_epoch()).count()) /
           1e6;
}

QColor VideoCell::labelColor()
{
    return QColor::fromRgbF(0.8431372549019608f, 0.8392156862745098f, 0.8509803921568627f, 0.7f);
}

static QLabel *makeLabel(QWidget *parent, const char *description)
{
    auto *label = new QLabel(parent);
    // The label's own text is what a screen reader says; the description is what tests find.
    label->setAccessibleDescription(QString::fromLatin1(description));
    label->setAlignment(Qt::AlignCenter);
    QFont font = label->font();
    font.setPixelSize(13);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, VideoCell::labelColor());
    label->setPalette(palette);
    // Presses go to the row.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

namespace {

// A row tells a screen reader (and the tests) that it can be selected and whether it is.
class VideoCellAccessible : public QAccessibleWidget {
public:
    explicit VideoCellAccessible(VideoCell *cell) : QAccessibleWidget(cell, QAccessible::ListItem)
    {}
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = static_cast<VideoCell *>(widget())->selected();
        return state;
    }
};

QAccessibleInterface *videoCellAccessibleFactory(const QString &className, QObject *object)
{
    if (className == QLatin1String("VideoCell") && object && object->isWidgetType())
        return new VideoCellAccessible(static_cast<VideoCell *>(object));
    return nullptr;
}

} // namespace

VideoCell::VideoCell(QWidget *parent)
    : QWidget(parent), nameLabel_(makeLabel(this, "nameLabel")),
      durationLabel_(makeLabel(this, "durationLabel")), sizeLabel_(makeLabel(this, "sizeLabel")),
      dateLabel_(makeLabel(this, "dateLabel")), now_(wallClockNow)
{
    static const bool factoryInstalled = [] {
        QAccessible::installFactory(videoCellAccessibleFactory);
        return true;
    }();
    Q_UNUSED(factoryInstalled);
    setAccessibleDescription(QStringLiteral("VideoCell"));
    layoutLabels();
}

void VideoCell::setFileData(const QVariantMap &fileData)
{
    fileData_ = fileData;
    const QString name = VideoCellText::nameText(fileData);
    nameLabel_->setText(name);
    durationLabel_->setText(VideoCellText::durationText(fileData));
    durationLabel_->setHidden(VideoCellText::isImage(fileData));
    sizeLabel_->setText(VideoCellText::sizeText(fileData));
    dateLabel_->setText(VideoCellText::dateText(fileData));
    setAccessibleName(name);
}

void VideoCell::setSelected(bool selected)
{
    const bool changed = selected_ != selected;
    selected_ = selected;
    if (changed && QAccessible::isActive()) {
        QAccessible::State state;
        state.selected = true;
        QAccessibleStateChangeEvent event(this, state);
        QAccessible::updateAccessibility(&event);
    }
    if (selectedBlock_)
        selectedBlock_(this, selected);
    update();
}

void VideoCell::setNowFunction(NowFunction now)
{
    now_ = now ? std::move(now) : NowFunction(wallClockNow);
}

void VideoCell::setNBackGroundColor(const QColor &color)
{
    nBackGroundColor_ = color;
    update();
}

void VideoCell::setSBackGroundColor(const QColor &color)
{
    sBackGroundColor_ = color;
    update();
}

void VideoCell::setNBackGroundImage(const QPixmap &image)
{
    nBackGroundImage_ = image;
    update();
}

void VideoCell::setSBackGroundImage(const QPixmap &image)
{
    sBackGroundImage_ = image;
    update();
}

void VideoCell::mouseDown()
{
    const double now = now_();
    if (now - clickTime_ < kDoubleClickInterval) {
        if (mouseDoubleClickDownBlock_)
            mouseDoubleClickDownBlock_(this);
    } else if (enabele_ && !selected_ && mouseDownBlock_) {
        mouseDownBlock_(this);
    }
    clickTime_ = now;
}

// Qt hands the second press of a double-click over as a double-click event alone; the default
// handler of that comes here, so the row sees every press and keeps its own 0.2 s rule.
void VideoCell::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    event->accept();
    mouseDown();
}

void VideoCell::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), selected_ ? sBackGroundColor_ : nBackGroundColor_);
    const QPixmap &image = selected_ ? sBackGroundImage_ : nBackGroundImage_;
    if (!image.isNull())
        painter.drawPixmap(rect(), image);
}

void VideoCell::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    layoutLabels();
}

// The columns from the left at their fixed widths, each label centred in the row's height.
void VideoCell::layoutLabels()
{
    const int y = (height() - kLabelHeight) / 2;
    int x = 0;
    for (auto [label, width] :
         {std::pair{nameLabel_, kNameWidth}, std::pair{durationLabel_, kDurationWidth},
          std::pair{sizeLabel_, kSizeWidth}, std::pair{dateLabel_, kDateWidth}}) {
        label->setGeometry(x, y, width, kLabelHeight);
        x += width;
    }
}
