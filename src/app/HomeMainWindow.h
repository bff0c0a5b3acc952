#pragma once
// The main window: a title strip, the home view with its five source buttons, and the
// source screen. Only the composition lives here; AppDelegate drives every control
// through the outlets below, as the window's controller.
#include <QPointer>
#include <QWidget>
#include <functional>

class QComboBox;
class QMenu;
class QMenuBar;
class QLabel;
class NSVertProgressView;
class SKVoiceWaveView;
class TNButton;

class HomeMainWindow : public QWidget {
    Q_OBJECT
public:
    static constexpr int kWidth = 628;
    static constexpr int kHomeHeight = 197;
    static constexpr int kSourceHeight = 220;
    static constexpr int kCameraHeight = 490;
    static constexpr int kTitleHeight = 28;

    explicit HomeMainWindow(QWidget *parent = nullptr);

    // Keeps the centre and fixes the size: the user can't resize the window.
    void setHeightKeepingCentre(int height);
    // A hidden window stays alive and keeps receiving updates: transparent and click-through.
    bool isShownToUser() const;
    void setShownToUser(bool shown);
    // Asked by a close: true lets the window close (and the program end).
    std::function<bool()> shouldClose;

    // Title strip.
    QWidget *windTitleBg = nullptr;
    QLabel *windTitleContent = nullptr;
    TNButton *closeButton = nullptr;
    TNButton *miniaturizeButton = nullptr;
    // The program's menus, in the title strip since the window has no frame of the desktop's.
    // Each menu and item is named by its text key (objectName); an item's data is its tag.
    QMenuBar *mainMenu = nullptr;

    // Home view.
    QWidget *homeView = nullptr;
    QList<TNButton *> homeButtons; // fullScreenBtn ... audioBtn, tags 0 to 4

    // Source screen.
    QWidget *infoView = nullptr;
    QWidget *infoContentView = nullptr;
    QWidget *infoDocementView = nullptr;
    TNButton *backhomeBtn = nullptr;
    QComboBox *chooseViewItemBox = nullptr;
    QWidget *screenItemBoxContentView = nullptr;
    QComboBox *screenItempopBtn = nullptr;
    QWidget *videoSetsView = nullptr;
    QWidget *framParent = nullptr;
    TNButton *framIm = nullptr;
    QComboBox *frameItemBox = nullptr;
    QWidget *fpsParent = nullptr;
    TNButton *fpsIm = nullptr;
    QComboBox *fpstemBox = nullptr;
    QWidget *captrueParent = nullptr;
    TNButton *captrueIm = nullptr;
    QComboBox *captrueItemBox = nullptr;
    QWidget *audioSetsView = nullptr;
    QWidget *audioParent = nullptr;
    TNButton *audioIm = nullptr;
    QComboBox *audioItemBox = nullptr;
    NSVertProgressView *progressView = nullptr;
    QWidget *audioExtensionView = nullptr;
    TNButton *audioExtensionIm = nullptr;
    QComboBox *audioExtensionBox = nullptr;
    TNButton *recordBtn = nullptr;
    TNButton *pauseOrReume = nullptr;
    TNButton *resumeAudioBtn = nullptr;
    QWidget *recordingTimeBgView = nullptr;
    QLabel *recordCurrentTimelabel = nullptr;
    QLabel *recordFileSizelabel = nullptr;
    // Audio only.
    QWidget *onlyAudioStrip = nullptr; // the parent of onlyAudio_AudioTypeIm
    TNButton *onlyAudio_AudioTypeIm = nullptr;
    QLabel *onlyAudio_AudioTypeTitle = nullptr;
    QComboBox *onlyAudio_AudioTypePopBtn = nullptr;
    QLabel *audioprogressLabel = nullptr;
    QLabel *audioFileSizeLabel = nullptr;
    QWidget *voiceWaveView = nullptr;
    SKVoiceWaveView *voiceContentView = nullptr;
    // Tools.
    TNButton *timeSetsBtn = nullptr;
    TNButton *splitSetsBtn = nullptr;
    TNButton *fileListBtn = nullptr;
    TNButton *pencilBtn = nullptr;
    TNButton *screenShortBtn = nullptr;
    TNButton *setsBtn = nullptr;
    TNButton *startSetsBtn = nullptr;
    // The start menu, or the stop menu while recording, built at each opening.
    QMenu *startSetsItemBox = nullptr;
    // Camera mode.
    QWidget *captrueInputView = nullptr;
    QLabel *captrueContentVideoView = nullptr;
    QComboBox *captruesBox = nullptr;
    QComboBox *systemAudioBox = nullptr;
    QComboBox *micphoneBox = nullptr;
    NSVertProgressView *systemProgress = nullptr;
    NSVertProgressView *micphoneProgress = nullptr;
    TNButton *captrueStartBtn = nullptr; // the view with tag 40
    QWidget *captrueRecordView = nullptr;
    QLabel *captrueRecordTimeLabel = nullptr;
    QLabel *captrueFilesizeLabel = nullptr;
    TNButton *captureRecordStopBtn = nullptr;
    TNButton *captruePauseOrResumeBtn = nullptr;

    // Sets a button's normal and hovered images; the accessible description follows
    // the image's key ("btnStopRecord_Normal" gives "btnStopRecord").
    static void setButtonImages(TNButton *button, const QString &normal, const QString &hovered);
    // Fills a pop-up: an empty first item, then the texts.
    static void fillPopup(QComboBox *box, const QStringList &texts);
    // Looks up again the texts the window keeps by key: the menus, the home buttons' titles,
    // the camera panel's labels and every button's accessible name.
    void ChangeLoanguage();

protected:
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildTitleStrip();
    void buildMainMenu();
    void buildHomeView();
    void buildInfoView();
    void buildAudioOnlyStrip();
    void buildToolButtons();
    void buildCameraView();

    QPointF centre_;
};
