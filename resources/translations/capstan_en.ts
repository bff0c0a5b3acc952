<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name></name>
    <message id="Meun_App">
        <source>Capstan</source>
        <translation>Capstan</translation>
    </message>
    <message id="Menu_State">
        <source>Capstan</source>
        <translation>Capstan</translation>
    </message>
    <message id="HelpUrl">
        <source>https://capstan.org/help</source>
        <extracomment>Opened in the web browser by the Help menu.</extracomment>
        <translation>https://capstan.org/help</translation>
    </message>
    <message id="OK">
        <source>OK</source>
        <extracomment>Accepts the region of a still clip.</extracomment>
        <translation>OK</translation>
    </message>
    <message id="Cancel">
        <source>Cancel</source>
        <extracomment>Ends a still clip without a picture.</extracomment>
        <translation>Cancel</translation>
    </message>
    <message id="Clip Screen Area">
        <source>Clip Screen Area</source>
        <extracomment>The screenshot button's entry that starts a still clip of a region or window.</extracomment>
        <translation>Clip Screen Area</translation>
    </message>
    <message id="Clip Full Screen">
        <source>Clip Full Screen</source>
        <extracomment>The screenshot button's entry that takes the whole main display.</extracomment>
        <translation>Clip Full Screen</translation>
    </message>
    <message id="Press ESC key to exit">
        <source>Press ESC key to exit</source>
        <extracomment>The hint over a region being chosen for a recording.</extracomment>
        <translation>Press ESC key to exit</translation>
    </message>
    <message id="Main_Full_Screen">
        <source>Full Screen</source>
        <translation>Full Screen</translation>
    </message>
    <message id="Main_Custom_Area">
        <source>Custom Area</source>
        <translation>Custom Area</translation>
    </message>
    <message id="Main_App_Window">
        <source>App Window</source>
        <translation>App Window</translation>
    </message>
    <message id="Main_Camera">
        <source>Camera</source>
        <translation>Camera</translation>
    </message>
    <message id="Main_Audio_Only">
        <source>Audio Only</source>
        <translation>Audio Only</translation>
    </message>
    <message id="Main_Fram_Original_Quality">
        <source>Original</source>
        <translation>Original</translation>
    </message>
    <message id="Main_Fram_HD_Quality">
        <source>HD</source>
        <translation>HD</translation>
    </message>
    <message id="Main_Fram_SD_Quality">
        <source>SD</source>
        <translation>SD</translation>
    </message>
    <message id="Main_On">
        <source>On</source>
        <translation>On</translation>
    </message>
    <message id="Main_Off">
        <source>Off</source>
        <translation>Off</translation>
    </message>
    <message id="SelectCaptrue">
        <source>Select Camera</source>
        <translation>Select Camera</translation>
    </message>
    <message id="Main_Audio_System">
        <source>System Audio</source>
        <translation>System Audio</translation>
    </message>
    <message id="Main_Audio_Micphone">
        <source>Microphone</source>
        <translation>Microphone</translation>
    </message>
    <message id="Main_Audio_System&amp;Micphone">
        <source>System Audio &amp; Microphone</source>
        <translation>System Audio &amp; Microphone</translation>
    </message>
    <message id="Main_Audio_None">
        <source>No Audio</source>
        <translation>No Audio</translation>
    </message>
    <message id="Main_CaptureCamera">
        <source>Camera</source>
        <translation>Camera</translation>
    </message>
    <message id="Main_SystemAudio">
        <source>System Audio</source>
        <translation>System Audio</translation>
    </message>
    <message id="Main_Micphone">
        <source>Microphone</source>
        <translation>Microphone</translation>
    </message>
    <message id="timeSetsBtn.toolTip">
        <source>Recording time limit</source>
        <translation>Recording time limit</translation>
    </message>
    <message id="splitSetsBtn.toolTip">
        <source>Split recordings automatically</source>
        <translation>Split recordings automatically</translation>
    </message>
    <message id="screenShortBtn.toolTip">
        <source>Take a screenshot</source>
        <translation>Take a screenshot</translation>
    </message>
    <message id="setsBtn.toolTip">
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
    <message id="doodletoolBtn.toolTip">
        <source>Draw on the screen</source>
        <translation>Draw on the screen</translation>
    </message>
    <message id="fileListBtn.toolTip">
        <source>Recordings</source>
        <translation>Recordings</translation>
    </message>
    <message id="Menu_Edit_Start">
        <source>Start/Stop Recording</source>
        <translation>Start/Stop Recording</translation>
    </message>
    <message id="Menu_Edit_Pause">
        <source>Pause/Resume</source>
        <translation>Pause/Resume</translation>
    </message>
    <message id="Menu_Edit_Captrue">
        <source>Camera On/Off</source>
        <translation>Camera On/Off</translation>
    </message>
    <message id="Menu_Edit_ScreenShort">
        <source>Screenshot</source>
        <translation>Screenshot</translation>
    </message>
    <message id="Menu_Edit_DooleTool">
        <source>Drawing Tools</source>
        <translation>Drawing Tools</translation>
    </message>
    <message id="Menu_Edit">
        <source>Edit</source>
        <extracomment>The main window's menu of recording actions.</extracomment>
        <translation>Edit</translation>
    </message>
    <message id="Menu_Language">
        <source>Language</source>
        <translation>Language</translation>
    </message>
    <message id="Menu_Language_English">
        <source>English</source>
        <extracomment>Always in the language itself, so a user who cannot read the current one finds it.</extracomment>
        <translation>English</translation>
    </message>
    <message id="Menu_Language_Chinese">
        <source>简体中文</source>
        <extracomment>Always in the language itself, so a user who cannot read the current one finds it.</extracomment>
        <translation>简体中文</translation>
    </message>
    <message id="Menu_Help">
        <source>Help</source>
        <translation>Help</translation>
    </message>
    <message id="Menu_Help_Capstan">
        <source>Capstan Help</source>
        <extracomment>Opens the help page (HelpUrl) in the web browser.</extracomment>
        <translation>Capstan Help</translation>
    </message>
    <message id="hideMain">
        <source>Hide Capstan</source>
        <translation>Hide Capstan</translation>
    </message>
    <message id="showMain">
        <source>Show Capstan</source>
        <translation>Show Capstan</translation>
    </message>
    <message id="Alert_Title">
        <source>Capstan</source>
        <translation>Capstan</translation>
    </message>
    <message id="Alert_Camera_Message">
        <source>No camera is selected. Connect a camera and choose it in the camera list.</source>
        <translation>No camera is selected. Connect a camera and choose it in the camera list.</translation>
    </message>
    <message id="Alert_Mic_Message">
        <source>No microphone was found. Connect one and choose it again.</source>
        <translation>No microphone was found. Connect one and choose it again.</translation>
    </message>
    <message id="Alert_DisAble_Message">
        <source>Capstan may not use this device. Allow it in the system settings.</source>
        <translation>Capstan may not use this device. Allow it in the system settings.</translation>
    </message>
    <message id="Alert_DisableOpenFile_Message">
        <source>This file no longer exists. It may have been moved or deleted.</source>
        <translation>This file no longer exists. It may have been moved or deleted.</translation>
    </message>
    <message id="Alert_OutputFolder_Message">
        <source>Capstan cannot create the folder %1 for recordings. Check its permissions and free space.</source>
        <extracomment>%1 is the full path of the folder.</extracomment>
        <translation>Capstan cannot create the folder %1 for recordings. Check its permissions and free space.</translation>
    </message>
    <message id="Alert_Recovered_Message">
        <source>Capstan was closed while it was recording. The recording was recovered and added to your list: %1</source>
        <extracomment>At a start after the program ended in the middle of a recording; %1 the recovered files.</extracomment>
        <translation>Capstan was closed while it was recording. The recording was recovered and added to your list: %1</translation>
    </message>
    <message id="Alert_RecoverFailed_Message">
        <source>Capstan was closed while it was recording, and %1 cannot be read. The file was left where it is.</source>
        <extracomment>At a start after the program ended in the middle of a recording; %1 the files that are no media.</extracomment>
        <translation>Capstan was closed while it was recording, and %1 cannot be read. The file was left where it is.</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORD">
        <source>Record</source>
        <translation>Record</translation>
    </message>
    <message id="ID_MAINPOPMENU_SNAPSHOT">
        <source>Screenshot</source>
        <translation>Screenshot</translation>
    </message>
    <message id="ID_MAINPOPMENU_COUNTDOWN">
        <source>Record After Countdown</source>
        <translation>Record After Countdown</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME1">
        <source>3 Seconds</source>
        <extracomment>The three countdown texts must differ: the menu tells its items apart by their text.</extracomment>
        <translation>3 Seconds</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME2">
        <source>5 Seconds</source>
        <translation>5 Seconds</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME3">
        <source>10 Seconds</source>
        <translation>10 Seconds</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP">
        <source>Record with Automatic Stop</source>
        <translation>Record with Automatic Stop</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP_1">
        <source>Record Now</source>
        <extracomment>Must differ from ID_MAINPOPMENU_AUTOSTOP_2: the menu tells its items apart by their text.</extracomment>
        <translation>Record Now</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP_2">
        <source>Automatic Stop Settings…</source>
        <translation>Automatic Stop Settings…</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_0">
        <source>Stop Now</source>
        <translation>Stop Now</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_1">
        <source>Stop in 10 Minutes</source>
        <translation>Stop in 10 Minutes</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_2">
        <source>Stop in 20 Minutes</source>
        <translation>Stop in 20 Minutes</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_3">
        <source>Stop in 30 Minutes</source>
        <translation>Stop in 30 Minutes</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_4">
        <source>Automatic Stop Settings…</source>
        <translation>Automatic Stop Settings…</translation>
    </message>
    <message id="Title">
        <source>Automatic Stop</source>
        <translation>Automatic Stop</translation>
    </message>
    <message id="lblEnabledAutoStop">
        <source>Stop recording automatically</source>
        <translation>Stop recording automatically</translation>
    </message>
    <message id="lblFileSizeSetTime">
        <source>After a duration of</source>
        <translation>After a duration of</translation>
    </message>
    <message id="lblFileSizeSetSizeNum">
        <source>When the file reaches</source>
        <translation>When the file reaches</translation>
    </message>
    <message id="lblSecond">
        <source>seconds</source>
        <translation>seconds</translation>
    </message>
    <message id="lblMB">
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message id="lblStopSettingOnce">
        <source>This recording only</source>
        <translation>This recording only</translation>
    </message>
    <message id="lblStopSettingEveryTime">
        <source>Every recording</source>
        <translation>Every recording</translation>
    </message>
    <message id="lbComplete1">
        <source>When finished:</source>
        <translation>When finished:</translation>
    </message>
    <message id="chCtrl1">
        <source>Do nothing</source>
        <translation>Do nothing</translation>
    </message>
    <message id="chCtrl4">
        <source>Quit Capstan</source>
        <translation>Quit Capstan</translation>
    </message>
    <message id="btnOK">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="btnCancel">
        <source>Cancel</source>
        <translation>Cancel</translation>
    </message>
    <message id="TM_MessageLabel_Title">
        <source>Recording Time Limit</source>
        <translation>Recording Time Limit</translation>
    </message>
    <message id="TM_MessageLabel_Video">
        <source>Choose how long the video recording may last.</source>
        <translation>Choose how long the video recording may last.</translation>
    </message>
    <message id="TM_MessageLabel_Audio">
        <source>Choose how long the sound recording may last.</source>
        <translation>Choose how long the sound recording may last.</translation>
    </message>
    <message id="TM_NoTime">
        <source>No limit</source>
        <translation>No limit</translation>
    </message>
    <message id="TM_30MinTime">
        <source>30 minutes</source>
        <translation>30 minutes</translation>
    </message>
    <message id="TM_60MinTime">
        <source>60 minutes</source>
        <translation>60 minutes</translation>
    </message>
    <message id="TM_CustonTime">
        <source>Custom</source>
        <translation>Custom</translation>
    </message>
    <message id="TM_OK">
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message id="lblEnabledAutoSplit">
        <source>Split recordings automatically</source>
        <translation>Split recordings automatically</translation>
    </message>
    <message id="lblSplitByTime">
        <source>By time, every</source>
        <translation>By time, every</translation>
    </message>
    <message id="lblSplitBySize">
        <source>By size, every</source>
        <translation>By size, every</translation>
    </message>
    <message id="Auto_lblSecond">
        <source>seconds</source>
        <translation>seconds</translation>
    </message>
    <message id="Auto_lblMB">
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message id="Auto_lblStopSettingOnce">
        <source>This recording only</source>
        <translation>This recording only</translation>
    </message>
    <message id="Auto_lblStopSettingEveryTime">
        <source>Every recording</source>
        <translation>Every recording</translation>
    </message>
    <message id="FileList">
        <source>Recordings</source>
        <translation>Recordings</translation>
    </message>
    <message id="FileName">
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message id="FileDuration">
        <source>Duration</source>
        <translation>Duration</translation>
    </message>
    <message id="FileSize">
        <source>Size</source>
        <translation>Size</translation>
    </message>
    <message id="FileDate">
        <source>Date</source>
        <translation>Date</translation>
    </message>
    <message id="FileList_Play">
        <source>Play</source>
        <translation>Play</translation>
    </message>
    <message id="FileList_Edit">
        <source>Edit</source>
        <translation>Edit</translation>
    </message>
    <message id="FileList_OpenDir">
        <source>Show in Folder</source>
        <translation>Show in Folder</translation>
    </message>
    <message id="FileList_Delete">
        <source>Delete</source>
        <translation>Delete</translation>
    </message>
    <message id="closeButton">
        <source>Close</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Close</translation>
    </message>
    <message id="miniaturizeButton">
        <source>Minimize</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Minimize</translation>
    </message>
    <message id="backhomeBtn">
        <source>Back</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Back</translation>
    </message>
    <message id="framIm">
        <source>Quality</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Quality</translation>
    </message>
    <message id="fpsIm">
        <source>Frame Rate</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Frame Rate</translation>
    </message>
    <message id="captrueIm">
        <source>Camera</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Camera</translation>
    </message>
    <message id="audioIm">
        <source>Sound</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Sound</translation>
    </message>
    <message id="onlyAudio_AudioTypeIm">
        <source>Sound Source</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Sound Source</translation>
    </message>
    <message id="audioExtensionIm">
        <source>File Type</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>File Type</translation>
    </message>
    <message id="timeSetsBtn">
        <source>Time Limit</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Time Limit</translation>
    </message>
    <message id="splitSetsBtn">
        <source>Automatic Split</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Automatic Split</translation>
    </message>
    <message id="fileListBtn">
        <source>Recordings</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Recordings</translation>
    </message>
    <message id="pencilBtn">
        <source>Drawing Tools</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Drawing Tools</translation>
    </message>
    <message id="screenShortBtn">
        <source>Screenshot</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Screenshot</translation>
    </message>
    <message id="setsBtn">
        <source>Settings</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Settings</translation>
    </message>
    <message id="startSetsBtn">
        <source>Recording Options</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Recording Options</translation>
    </message>
    <message id="btnStartRecrord">
        <source>Start Recording</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Start Recording</translation>
    </message>
    <message id="btnStopRecord">
        <source>Stop Recording</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Stop Recording</translation>
    </message>
    <message id="btnPauseRecord">
        <source>Pause</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Pause</translation>
    </message>
    <message id="btnContinueRecord">
        <source>Resume</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>Resume</translation>
    </message>
</context>
</TS>
