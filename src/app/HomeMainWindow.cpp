#include "HomeMainWindow.h"

#include "Images.h"
#include "Localization.h"
#include "NSVertProgressView.h"
#include "SKVoiceWaveView.h"
#include "TNButton.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScreen>
#include <QWindow>
#include <cmath>

using Localization::localizedStringForKey;

namespace {

const QColor kWindowColor = QColor::fromRgbF(0.184f, 0.216f, 0.255f);
const QColor kContentColor = QColor::fromRgbF(0.122f, 0.122f, 0.157f);
const QColor kLabelColor = QColor::fromRgbF(0.910f, 0.910f, 0.910f);
const QColor kToolTextColor = QColor::fromRgbF(0.592f, 0.627f, 0.659f);
const char *kNormalImage = "capstanNormalImage";
const char *kHoveredImage = "capstanHoveredImage";
const char *kImageSize = "capstanImageSize";

QPixmap buttonPixmap(const TNButton *button, const QString &name)
{
    const QSize size = button->property(kImageSize).toSize();
    return pixmapNamed(name, size.isValid() ? size : button->size());
}

void fill(QWidget *view, const QColor &color)
{
    view->setAutoFillBackground(true);
    QPalette palette = view->palette();
    palette.setColor(QPalette::Window, color);
    view->setPalette(palette);
}

QWidget *panel(QWidget *parent, const QRect &frame, const QString &description)
{
    auto *view = new QWidget(parent);
    view->setGeometry(frame);
    view->setAccessibleDescription(description);
    return view;
}

QLabel *label(QWidget *parent, const QRect &frame, const QString &description, int pointSize = 12)
{
    auto *text = new QLabel(parent);
    text->setGeometry(frame);
    text->setAlignment(Qt::AlignCenter);
    // A label's accessible name is its text: the key goes in the description.
    text->setAccessibleDescription(description);
    QPalette palette = text->palette();
    palette.setColor(QPalette::WindowText, kLabelColor);
    text->setPalette(palette);
    QFont font = text->font();
    font.setPointSize(pointSize);
    text->setFont(font);
    return text;
}

QComboBox *popup(QWidget *parent, const QRect &frame, const QString &description)
{
    auto *box = new QComboBox(parent);
    box->setGeometry(frame);
    box->setAccessibleDescription(description);
    box->setFocusPolicy(Qt::NoFocus);
    return box;
}

// A button with a hover look: cyan text and the "_On" image while the pointer is over it.
TNButton *button(QWidget *parent, const QRect &frame, const QString &normal, const QString &hovered,
                 const QString &titleKey = QString())
{
    auto *result = new TNButton(frame, parent);
    result->setTracksMouse(true);
    HomeMainWindow::setButtonImages(result, normal, hovered);
    if (!titleKey.isEmpty()) {
        result->setText(localizedStringForKey(titleKey));
        result->setAccessibleName(result->text());
        result->setAccessibleDescription(titleKey);
        result->setTextColor(kToolTextColor);
    }
    const bool titled = !titleKey.isEmpty();
    result->setMouseEnteredBlock([titled](TNButton *b, QEvent *) {
        b->setImage(buttonPixmap(b, b->property(kHoveredImage).toString()));
        if (titled)
            b->setTextColor(Qt::cyan);
    });
    result->setMouseExitedBlock([titled](TNButton *b, QEvent *) {
        b->setImage(buttonPixmap(b, b->property(kNormalImage).toString()));
        if (titled)
            b->setTextColor(kToolTextColor);
    });
    return result;
}

// An image button named by what it does, not by its image.
TNButton *namedButton(QWidget *parent, const QRect &frame, const QString &normal,
                      const QString &hovered, const QString &description)
{
    TNButton *result = button(parent, frame, normal, hovered);
    result->setAccessibleDescription(description);
    result->setAccessibleName(localizedStringForKey(description));
    result->setProperty("capstanFixedDescription", true);
    return result;
}

} // namespace

void HomeMainWindow::setButtonImages(TNButton *button, const QString &normal,
                                     const QString &hovered)
{
    button->setProperty(kNormalImage, normal);
    button->setProperty(kHoveredImage, hovered);
    button->setImage(buttonPixmap(button, button->isEntered() ? hovered : normal));
    if (button->text().isEmpty() && !button->property("capstanFixedDescription").toBool()) {
        QString key = normal;
        key.remove(QStringLiteral("_Normal"));
        button->setAccessibleDescription(key);
        button->setAccessibleName(localizedStringForKey(key));
    }
}

void HomeMainWindow::fillPopup(QComboBox *box, const QStringList &texts)
{
    box->clear();
    box->addItem(QString());
    box->addItems(texts);
}

HomeMainWindow::HomeMainWindow(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
{
    setWindowTitle(localizedStringForKey(QStringLiteral("Meun_App")));
    setAccessibleDescription(QStringLiteral("HomeMainWindow"));
    setWindowIcon(imageNamed(QStringLiteral("capstan")));
    fill(this, kWindowColor);
    setFixedSize(kWidth, kHomeHeight);
    // The pop-ups in the dark panel's colours.
    setStyleSheet(QStringLiteral(
        "QComboBox { background: rgb(47,55,65); color: rgb(232,232,232); border: 1px solid "
        "rgb(74,84,96);"
        " border-radius: 4px; padding: 1px 6px; }"
        "QComboBox:disabled { color: rgb(120,126,132); }"
        "QComboBox::drop-down { border: none; width: 16px; }"
        "QComboBox QAbstractItemView { background: rgb(47,55,65); color: rgb(232,232,232);"
        " selection-background-color: rgb(56,116,175); }"));
    buildHomeView();
    buildInfoView();
    buildTitleStrip();
}

void HomeMainWindow::buildTitleStrip()
{
    windTitleBg = panel(this, QRect(0, 0, kWidth, kTitleHeight), QStringLiteral("windTitleBg"));
    fill(windTitleBg, kWindowColor);
    windTitleContent =
        label(windTitleBg, QRect(0, 4, kWidth, 20), QStringLiteral("windTitleContent"), 14);
    windTitleContent->setText(windowTitle());
    windTitleContent->setPalette([&] {
        QPalette palette = windTitleContent->palette();
        palette.setColor(QPalette::WindowText, Qt::white);
        return palette;
    }());
    // Clicks on the title text move the window, as on its background.
    windTitleContent->setAttribute(Qt::WA_TransparentForMouseEvents);
    closeButton = namedButton(windTitleBg, QRect(8, 7, 14, 14), QStringLiteral("btnClose_Normal"),
                              QStringLiteral("btnClose_Normal"), QStringLiteral("closeButton"));
    connect(closeButton, &TNButton::clicked, this, &QWidget::close);
    miniaturizeButton =
        namedButton(windTitleBg, QRect(28, 7, 14, 14), QStringLiteral("btnMinimize_Normal"),
                    QStringLiteral("btnMinimize_Normal"), QStringLiteral("miniaturizeButton"));
    connect(miniaturizeButton, &TNButton::clicked, this, &QWidget::showMinimized);
    buildMainMenu();
    windTitleBg->raise();
}

void HomeMainWindow::buildMainMenu()
{
    mainMenu = new QMenuBar(windTitleBg);
    mainMenu->setNativeMenuBar(false);
    mainMenu->setGeometry(50, 3, 240, 22);
    mainMenu->setAccessibleDescription(QStringLiteral("mainMenu"));
    mainMenu->setStyleSheet(
        QStringLiteral("QMenuBar { background: transparent; color: rgb(151,160,168); }"
                       "QMenuBar::item { background: transparent; padding: 2px 8px; }"
                       "QMenuBar::item:selected { background: rgb(56,116,175); color: white; }"
                       "QMenu { background: rgb(47,55,65); color: rgb(232,232,232); }"
                       "QMenu::item { padding: 4px 20px; }"
                       "QMenu::item:selected { background: rgb(56,116,175); }"));
    struct Item {
        const char *key;
        int tag;
    };
    const auto addMenu = [this](const char *key, std::initializer_list<Item> items) {
        QMenu *menu = mainMenu->addMenu(localizedStringForKey(QString::fromLatin1(key)));
        menu->setObjectName(QString::fromLatin1(key));
        menu->menuAction()->setObjectName(QString::fromLatin1(key));
        for (const Item &item : items) {
            QAction *action = menu->addAction(localizedStringForKey(QString::fromLatin1(item.key)));
            action->setObjectName(QString::fromLatin1(item.key));
            action->setData(item.tag);
        }
        return menu;
    };
    QMenu *edit = addMenu("Menu_Edit", {{"Menu_Edit_Start", 401},
                                        {"Menu_Edit_Pause", 402},
                                        {"Menu_Edit_ScreenShort", 403},
                                        {"Menu_Edit_Captrue", 404}});
    // Recording acts on a source: the window opens on the home view, where there is none.
    edit->menuAction()->setEnabled(false);
    // English and Simplified Chinese; Traditional Chinese follows the desktop's language.
    addMenu("Menu_Language", {{"Menu_Language_English", 201}, {"Menu_Language_Chinese", 202}});
    addMenu("Menu_Help", {{"Menu_Help_Capstan", 100}});
}

void HomeMainWindow::ChangeLoanguage()
{
    setWindowTitle(localizedStringForKey(QStringLiteral("Meun_App")));
    windTitleContent->setText(windowTitle());
    // Menus and items by their keys, two levels down.
    for (QAction *top : mainMenu->actions()) {
        const QString title = localizedStringForKey(top->objectName());
        top->setText(title);
        QMenu *menu = top->menu();
        if (!menu)
            continue;
        menu->setTitle(title);
        for (QAction *item : menu->actions()) {
            if (!item->objectName().isEmpty())
                item->setText(localizedStringForKey(item->objectName()));
            if (QMenu *sub = item->menu()) {
                for (QAction *subItem : sub->actions())
                    if (!subItem->objectName().isEmpty())
                        subItem->setText(localizedStringForKey(subItem->objectName()));
            }
        }
    }
    // A button's description is its key: the title's for titled buttons, else the name's.
    for (TNButton *button : findChildren<TNButton *>()) {
        const QString key = button->accessibleDescription();
        if (key.isEmpty())
            continue;
        if (!button->text().isEmpty())
            button->setText(localizedStringForKey(key));
        button->setAccessibleName(localizedStringForKey(key));
    }
    // The camera panel's labels, tags 10, 20 and 30.
    for (QLabel *title : captrueInputView->findChildren<QLabel *>()) {
        if (title->property("tag").toInt() > 0)
            title->setText(localizedStringForKey(title->accessibleDescription()));
    }
}

void HomeMainWindow::buildHomeView()
{
    homeView = panel(this, QRect(0, kTitleHeight, kWidth, kHomeHeight - kTitleHeight),
                     QStringLiteral("homeView"));
    fill(homeView, kContentColor);
    const QStringList images{
        QStringLiteral("btnMainRec_Screen_Normal"), QStringLiteral("btnMainRec_Program_Normal"),
        QStringLiteral("btnMainRec_Program_Normal"), QStringLiteral("btnMainRec_Camera_Normal"),
        QStringLiteral("btnMainRec_Audio_Normal")};
    const QStringList titles{QStringLiteral("Main_Full_Screen"), QStringLiteral("Main_Custom_Area"),
                             QStringLiteral("Main_App_Window"), QStringLiteral("Main_Camera"),
                             QStringLiteral("Main_Audio_Only")};
    for (int tag = 0; tag < titles.size(); ++tag) {
        TNButton *home = button(homeView, QRect(14 + tag * 120, 14, 112, 140), images.at(tag),
                                images.at(tag), titles.at(tag));
        home->setIndex(tag);
        home->setProperty(kImageSize, QSize(72, 72));
        setButtonImages(home, images.at(tag), images.at(tag));
        // The image in the upper 104 points, the title in the 36 below (the insets' arithmetic
        // takes bottom - top from the height).
        home->setImageEdgeInsets(NSEdgeInsets{0, 0, 36, 0});
        home->setTexteEdgeInsets(NSEdgeInsets{104, 0, 208, 0});
        homeButtons.append(home);
    }
}

void HomeMainWindow::buildInfoView()
{
    infoView = panel(this, QRect(0, 30, kWidth, kSourceHeight - 30), QStringLiteral("infoView"));
    fill(infoView, kContentColor);
    infoContentView =
        panel(infoView, QRect(0, 0, kWidth, kSourceHeight - 30), QStringLiteral("infoContentView"));
    // The top row stays in every mode, camera mode included.
    backhomeBtn = namedButton(infoView, QRect(12, 10, 24, 24), QStringLiteral("btnBackHome_Normal"),
                              QStringLiteral("btnBackHome_On"), QStringLiteral("backhomeBtn"));
    chooseViewItemBox = popup(infoView, QRect(44, 9, 150, 26), QStringLiteral("chooseViewItemBox"));
    screenItemBoxContentView =
        panel(infoView, QRect(204, 7, 190, 30), QStringLiteral("screenItemBoxContentView"));
    screenItempopBtn =
        popup(screenItemBoxContentView, QRect(2, 2, 186, 26), QStringLiteral("screenItempopBtn"));

    infoDocementView =
        panel(infoContentView, QRect(0, 40, 470, 100), QStringLiteral("infoDocementView"));
    videoSetsView = panel(infoDocementView, QRect(0, 0, 350, 100), QStringLiteral("videoSetsView"));
    auto column = [this](QWidget *parent, int x, const QString &icon, const QString &description,
                         QWidget *&holder, TNButton *&image, QComboBox *&box) {
        holder = panel(parent, QRect(x, 0, 116, 90), description + QStringLiteral("Parent"));
        image = namedButton(holder, QRect(42, 4, 32, 32), icon, icon, description);
        box = popup(holder, QRect(4, 44, 108, 26), QString());
    };
    QString unused;
    column(videoSetsView, 10, QStringLiteral("icon_frame"), QStringLiteral("framIm"), framParent,
           framIm, frameItemBox);
    frameItemBox->setAccessibleDescription(QStringLiteral("frameItemBox"));
    column(videoSetsView, 126, QStringLiteral("icon_fps"), QStringLiteral("fpsIm"), fpsParent,
           fpsIm, fpstemBox);
    fpstemBox->setAccessibleDescription(QStringLiteral("fpstemBox"));
    column(infoDocementView, 242, QStringLiteral("btnMainRec_NoCamera_Normal"),
           QStringLiteral("captrueIm"), captrueParent, captrueIm, captrueItemBox);
    captrueItemBox->setAccessibleDescription(QStringLiteral("captrueItemBox"));
    audioSetsView =
        panel(infoDocementView, QRect(350, 0, 120, 100), QStringLiteral("audioSetsView"));
    column(audioSetsView, 0, QStringLiteral("icon_audio"), QStringLiteral("audioIm"), audioParent,
           audioIm, audioItemBox);
    audioItemBox->setAccessibleDescription(QStringLiteral("audioItemBox"));
    progressView = new NSVertProgressView(QRect(112, 8, 6, 70), audioSetsView);
    progressView->setAccessibleDescription(QStringLiteral("progressView"));
    progressView->setTrackColor(Qt::cyan);
    recordingTimeBgView =
        panel(infoContentView, QRect(14, 44, 296, 80), QStringLiteral("recordingTimeBgView"));
    fill(recordingTimeBgView, Qt::black);
    recordingTimeBgView->setStyleSheet(QStringLiteral("border-radius: 5px;"));
    recordCurrentTimelabel = label(recordingTimeBgView, QRect(0, 6, 296, 40),
                                   QStringLiteral("recordCurrentTimelabel"), 26);
    recordCurrentTimelabel->setText(QStringLiteral("00:00:00"));
    recordFileSizelabel =
        label(recordingTimeBgView, QRect(0, 48, 296, 24), QStringLiteral("recordFileSizelabel"));
    recordingTimeBgView->hide();

    recordBtn =
        button(infoContentView, QRect(530, 44, 64, 64), QStringLiteral("btnStartRecrord_Normal"),
               QStringLiteral("btnStartRecrord_On"));
    pauseOrReume =
        button(infoContentView, QRect(470, 52, 48, 48), QStringLiteral("btnPauseRecord_Normal"),
               QStringLiteral("btnPauseRecord_On"));
    pauseOrReume->hide();
    buildAudioOnlyStrip();
    buildToolButtons();
    buildCameraView();
    infoView->hide();
}

void HomeMainWindow::buildAudioOnlyStrip()
{
    voiceWaveView = panel(infoContentView, QRect(14, 40, 440, 64), QStringLiteral("voiceWaveView"));
    voiceWaveView->hide();
    onlyAudioStrip =
        panel(infoContentView, QRect(14, 106, 600, 40), QStringLiteral("onlyAudioStrip"));
    onlyAudio_AudioTypeIm =
        namedButton(onlyAudioStrip, QRect(0, 6, 28, 28), QStringLiteral("icon_audio"),
                    QStringLiteral("icon_audio"), QStringLiteral("onlyAudio_AudioTypeIm"));
    onlyAudio_AudioTypeTitle =
        label(onlyAudioStrip, QRect(0, 0, 0, 0), QStringLiteral("onlyAudio_AudioTypeTitle"));
    onlyAudio_AudioTypePopBtn =
        popup(onlyAudioStrip, QRect(32, 7, 180, 26), QStringLiteral("onlyAudio_AudioTypePopBtn"));
    // The file type of a sound recording, in the same row.
    audioExtensionView =
        panel(onlyAudioStrip, QRect(216, 0, 100, 40), QStringLiteral("audioExtensionView"));
    audioExtensionIm =
        namedButton(audioExtensionView, QRect(0, 0, 0, 0), QStringLiteral("icon_audioType"),
                    QStringLiteral("icon_audioType"), QStringLiteral("audioExtensionIm"));
    audioExtensionBox =
        popup(audioExtensionView, QRect(0, 7, 96, 26), QStringLiteral("audioExtensionBox"));
    audioprogressLabel =
        label(onlyAudioStrip, QRect(320, 0, 70, 40), QStringLiteral("audioprogressLabel"), 11);
    audioFileSizeLabel =
        label(onlyAudioStrip, QRect(390, 0, 124, 40), QStringLiteral("audioFileSizeLabel"), 9);
    resumeAudioBtn =
        button(infoContentView, QRect(470, 52, 48, 48), QStringLiteral("btnPauseRecord_Normal"),
               QStringLiteral("btnPauseRecord_On"));
    resumeAudioBtn->setProperty("capstanFixedDescription", true);
    resumeAudioBtn->setAccessibleDescription(QStringLiteral("resumeAudioBtn"));
    resumeAudioBtn->hide();
    onlyAudioStrip->hide();
}

void HomeMainWindow::buildToolButtons()
{
    struct Tool {
        TNButton **slot;
        const char *normal;
        const char *hovered;
        const char *description;
    };
    const Tool tools[] = {
        {&timeSetsBtn, "btnTiming_Normal", "btnTiming_On", "timeSetsBtn"},
        {&splitSetsBtn, "btnSplitFile_Normal", "btnSplitFile_On", "splitSetsBtn"},
        {&fileListBtn, "btnFileList_Normal", "btnFileList_On", "fileListBtn"},
        {&pencilBtn, "btnDrawPad_Normal", "btnDrawPad_On", "pencilBtn"},
        {&screenShortBtn, "icon_image", "icon_image", "screenShortBtn"},
        {&setsBtn, "btnSettings_Normal", "btnSettings_On", "setsBtn"},
    };
    int x = 14;
    for (const Tool &tool : tools) {
        *tool.slot =
            namedButton(infoContentView, QRect(x, 154, 28, 28), QString::fromLatin1(tool.normal),
                        QString::fromLatin1(tool.hovered), QString::fromLatin1(tool.description));
        x += 40;
    }
    startSetsBtn =
        namedButton(infoView, QRect(kWidth - 35, 10, 24, 24), QStringLiteral("btnTiming_Normal"),
                    QStringLiteral("btnTiming_On"), QStringLiteral("startSetsBtn"));
    startSetsItemBox = new QMenu(startSetsBtn);
    startSetsItemBox->setAccessibleDescription(QStringLiteral("startSetsItemBox"));
}

void HomeMainWindow::buildCameraView()
{
    captrueInputView = panel(infoView, QRect(0, 40, kWidth, kCameraHeight - 30 - 60),
                             QStringLiteral("captrueInputView"));
    captrueContentVideoView =
        label(captrueInputView, QRect(14, 0, 400, 225), QStringLiteral("captrueContentVideoView"));
    fill(captrueContentVideoView, Qt::black);
    auto row = [this](int y, const char *key, int tag, QComboBox *&box, const char *description) {
        QLabel *title = label(captrueInputView, QRect(430, y, 180, 20), QString::fromLatin1(key));
        title->setProperty("tag", tag);
        title->setText(localizedStringForKey(QString::fromLatin1(key)));
        box =
            popup(captrueInputView, QRect(430, y + 22, 170, 26), QString::fromLatin1(description));
    };
    row(0, "Main_CaptureCamera", 10, captruesBox, "captruesBox");
    row(60, "Main_SystemAudio", 20, systemAudioBox, "systemAudioBox");
    row(120, "Main_Micphone", 30, micphoneBox, "micphoneBox");
    systemProgress = new NSVertProgressView(QRect(606, 82, 8, 46), captrueInputView);
    systemProgress->setTrackColor(Qt::cyan);
    micphoneProgress = new NSVertProgressView(QRect(606, 142, 8, 46), captrueInputView);
    micphoneProgress->setTrackColor(Qt::cyan);
    captrueStartBtn =
        button(captrueInputView, QRect(482, 250, 64, 64), QStringLiteral("btnStartRecrord_Normal"),
               QStringLiteral("btnStartRecrord_On"));
    captrueStartBtn->setProperty("tag", 40);
    captrueRecordView =
        panel(captrueInputView, QRect(14, 240, 600, 90), QStringLiteral("captrueRecordView"));
    captrueRecordTimeLabel = label(captrueRecordView, QRect(0, 10, 260, 40),
                                   QStringLiteral("captrueRecordTimeLabel"), 24);
    captrueFilesizeLabel =
        label(captrueRecordView, QRect(0, 52, 260, 24), QStringLiteral("captrueFilesizeLabel"));
    captureRecordStopBtn =
        button(captrueRecordView, QRect(468, 10, 64, 64), QStringLiteral("btnStopRecord_Normal"),
               QStringLiteral("btnStopRecord_On"));
    captruePauseOrResumeBtn =
        button(captrueRecordView, QRect(396, 18, 48, 48), QStringLiteral("btnPauseRecord_Normal"),
               QStringLiteral("btnPauseRecord_On"));
    captrueRecordView->hide();
    captrueInputView->hide();
}

void HomeMainWindow::setHeightKeepingCentre(int height)
{
    // The exact centre is kept between changes, so going back and forth never drifts by
    // the rounding of odd heights; a window the user moved starts from where it is now.
    const QPointF now = QRectF(geometry()).center();
    if (std::abs(now.x() - centre_.x()) > 1 || std::abs(now.y() - centre_.y()) > 1)
        centre_ = now;
    setFixedSize(kWidth, height);
    move(qRound(centre_.x() - kWidth / 2.0), qRound(centre_.y() - height / 2.0));
}

bool HomeMainWindow::isShownToUser() const
{
    return windowOpacity() >= 1.0;
}

void HomeMainWindow::setShownToUser(bool shown)
{
    setWindowOpacity(shown ? 1.0 : 0.0);
    // Click-through while hidden. On the live native window: a change of the widget's flag
    // would make the window anew, and the window manager's frame would keep the input.
    setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
    if (QWindow *native = windowHandle())
        native->setFlag(Qt::WindowTransparentForInput, !shown);
}

void HomeMainWindow::closeEvent(QCloseEvent *event)
{
    if (shouldClose && !shouldClose()) {
        event->ignore();
        return;
    }
    event->accept();
}

void HomeMainWindow::mousePressEvent(QMouseEvent *event)
{
    // Movable by its background: the window manager moves it.
    if (event->button() == Qt::LeftButton && windowHandle()) {
        windowHandle()->startSystemMove();
        return;
    }
    QWidget::mousePressEvent(event);
}

void HomeMainWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    windTitleBg->setGeometry(0, 0, width(), kTitleHeight);
    windTitleContent->setGeometry(0, 4, width(), 20);
    infoView->setGeometry(0, 30, width(), height() - 30);
    infoContentView->setGeometry(0, 0, width(), qMin(height() - 30, kSourceHeight - 30));
    homeView->setGeometry(0, kTitleHeight, width(), height() - kTitleHeight);
    windTitleBg->raise();
}
