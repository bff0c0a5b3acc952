<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_TW" sourcelanguage="en">
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
        <translation>確定</translation>
    </message>
    <message id="Cancel">
        <source>Cancel</source>
        <extracomment>Ends a still clip without a picture.</extracomment>
        <translation>取消</translation>
    </message>
    <message id="Clip Screen Area">
        <source>Clip Screen Area</source>
        <extracomment>The screenshot button's entry that starts a still clip of a region or window.</extracomment>
        <translation>區域截圖</translation>
    </message>
    <message id="Clip Full Screen">
        <source>Clip Full Screen</source>
        <extracomment>The screenshot button's entry that takes the whole main display.</extracomment>
        <translation>全螢幕截圖</translation>
    </message>
    <message id="Press ESC key to exit">
        <source>Press ESC key to exit</source>
        <extracomment>The hint over a region being chosen for a recording.</extracomment>
        <translation>按 Esc 鍵退出</translation>
    </message>
    <message id="Main_Full_Screen">
        <source>Full Screen</source>
        <translation>全螢幕</translation>
    </message>
    <message id="Main_Custom_Area">
        <source>Custom Area</source>
        <translation>自訂區域</translation>
    </message>
    <message id="Main_App_Window">
        <source>App Window</source>
        <translation>應用程式視窗</translation>
    </message>
    <message id="Main_Camera">
        <source>Camera</source>
        <translation>攝影機</translation>
    </message>
    <message id="Main_Audio_Only">
        <source>Audio Only</source>
        <translation>僅音訊</translation>
    </message>
    <message id="Main_Fram_Original_Quality">
        <source>Original</source>
        <translation>原始畫質</translation>
    </message>
    <message id="Main_Fram_HD_Quality">
        <source>HD</source>
        <translation>高畫質</translation>
    </message>
    <message id="Main_Fram_SD_Quality">
        <source>SD</source>
        <translation>標準畫質</translation>
    </message>
    <message id="Main_On">
        <source>On</source>
        <translation>開啟</translation>
    </message>
    <message id="Main_Off">
        <source>Off</source>
        <translation>關閉</translation>
    </message>
    <message id="SelectCaptrue">
        <source>Select Camera</source>
        <translation>選擇攝影機</translation>
    </message>
    <message id="Main_Audio_System">
        <source>System Audio</source>
        <translation>系統聲音</translation>
    </message>
    <message id="Main_Audio_Micphone">
        <source>Microphone</source>
        <translation>麥克風</translation>
    </message>
    <message id="Main_Audio_System&amp;Micphone">
        <source>System Audio &amp; Microphone</source>
        <translation>系統聲音和麥克風</translation>
    </message>
    <message id="Main_Audio_None">
        <source>No Audio</source>
        <translation>不錄製聲音</translation>
    </message>
    <message id="Main_CaptureCamera">
        <source>Camera</source>
        <translation>攝影機</translation>
    </message>
    <message id="Main_SystemAudio">
        <source>System Audio</source>
        <translation>系統聲音</translation>
    </message>
    <message id="Main_Micphone">
        <source>Microphone</source>
        <translation>麥克風</translation>
    </message>
    <message id="timeSetsBtn.toolTip">
        <source>Recording time limit</source>
        <translation>錄製時間限制</translation>
    </message>
    <message id="splitSetsBtn.toolTip">
        <source>Split recordings automatically</source>
        <translation>自動分割錄製檔案</translation>
    </message>
    <message id="screenShortBtn.toolTip">
        <source>Take a screenshot</source>
        <translation>擷取螢幕畫面</translation>
    </message>
    <message id="setsBtn.toolTip">
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message id="doodletoolBtn.toolTip">
        <source>Draw on the screen</source>
        <translation>在螢幕上繪圖</translation>
    </message>
    <message id="fileListBtn.toolTip">
        <source>Recordings</source>
        <translation>錄製清單</translation>
    </message>
    <message id="Menu_Edit_Start">
        <source>Start/Stop Recording</source>
        <translation>開始/停止錄製</translation>
    </message>
    <message id="Menu_Edit_Pause">
        <source>Pause/Resume</source>
        <translation>暫停/繼續</translation>
    </message>
    <message id="Menu_Edit_Captrue">
        <source>Camera On/Off</source>
        <translation>開啟/關閉攝影機</translation>
    </message>
    <message id="Menu_Edit_ScreenShort">
        <source>Screenshot</source>
        <translation>截圖</translation>
    </message>
    <message id="Menu_Edit_DooleTool">
        <source>Drawing Tools</source>
        <translation>繪圖工具</translation>
    </message>
    <message id="Menu_Edit">
        <source>Edit</source>
        <extracomment>The main window's menu of recording actions.</extracomment>
        <translation>編輯</translation>
    </message>
    <message id="Menu_Language">
        <source>Language</source>
        <translation>語言</translation>
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
        <translation>說明</translation>
    </message>
    <message id="Menu_Help_Capstan">
        <source>Capstan Help</source>
        <extracomment>Opens the help page (HelpUrl) in the web browser.</extracomment>
        <translation>Capstan 說明</translation>
    </message>
    <message id="hideMain">
        <source>Hide Capstan</source>
        <translation>隱藏 Capstan</translation>
    </message>
    <message id="showMain">
        <source>Show Capstan</source>
        <translation>顯示 Capstan</translation>
    </message>
    <message id="Alert_Title">
        <source>Capstan</source>
        <translation>Capstan</translation>
    </message>
    <message id="Alert_Camera_Message">
        <source>No camera is selected. Connect a camera and choose it in the camera list.</source>
        <translation>未選擇攝影機。請連接攝影機，並在攝影機清單中選取。</translation>
    </message>
    <message id="Alert_Mic_Message">
        <source>No microphone was found. Connect one and choose it again.</source>
        <translation>找不到麥克風。請連接麥克風後重新選擇。</translation>
    </message>
    <message id="Alert_DisAble_Message">
        <source>Capstan may not use this device. Allow it in the system settings.</source>
        <translation>Capstan 無權使用此裝置。請在系統設定中允許存取。</translation>
    </message>
    <message id="Alert_DisableOpenFile_Message">
        <source>This file no longer exists. It may have been moved or deleted.</source>
        <translation>此檔案已不存在，可能已被移動或刪除。</translation>
    </message>
    <message id="Alert_OutputFolder_Message">
        <source>Capstan cannot create the folder %1 for recordings. Check its permissions and free space.</source>
        <extracomment>%1 is the full path of the folder.</extracomment>
        <translation>Capstan 無法建立用於儲存錄製檔案的資料夾 %1。請檢查該資料夾的權限和可用空間。</translation>
    </message>
    <message id="Alert_Recovered_Message">
        <source>Capstan was closed while it was recording. The recording was recovered and added to your list: %1</source>
        <extracomment>At a start after the program ended in the middle of a recording; %1 the recovered files.</extracomment>
        <translation>Capstan 在錄製過程中被關閉。錄製內容已復原，並已加入錄製清單：%1</translation>
    </message>
    <message id="Alert_RecoverFailed_Message">
        <source>Capstan was closed while it was recording, and %1 cannot be read. The file was left where it is.</source>
        <extracomment>At a start after the program ended in the middle of a recording; %1 the files that are no media.</extracomment>
        <translation>Capstan 在錄製過程中被關閉，%1 無法讀取。該檔案仍保留在原處。</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORD">
        <source>Record</source>
        <translation>錄製</translation>
    </message>
    <message id="ID_MAINPOPMENU_SNAPSHOT">
        <source>Screenshot</source>
        <translation>截圖</translation>
    </message>
    <message id="ID_MAINPOPMENU_COUNTDOWN">
        <source>Record After Countdown</source>
        <translation>倒數後錄製</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME1">
        <source>3 Seconds</source>
        <extracomment>The three countdown texts must differ: the menu tells its items apart by their text.</extracomment>
        <translation>3 秒</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME2">
        <source>5 Seconds</source>
        <translation>5 秒</translation>
    </message>
    <message id="ID_MAINPOPMENU_RECORDTIME3">
        <source>10 Seconds</source>
        <translation>10 秒</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP">
        <source>Record with Automatic Stop</source>
        <translation>錄製並自動停止</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP_1">
        <source>Record Now</source>
        <extracomment>Must differ from ID_MAINPOPMENU_AUTOSTOP_2: the menu tells its items apart by their text.</extracomment>
        <translation>立即錄製</translation>
    </message>
    <message id="ID_MAINPOPMENU_AUTOSTOP_2">
        <source>Automatic Stop Settings…</source>
        <translation>自動停止設定…</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_0">
        <source>Stop Now</source>
        <translation>立即停止</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_1">
        <source>Stop in 10 Minutes</source>
        <translation>10 分鐘後停止</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_2">
        <source>Stop in 20 Minutes</source>
        <translation>20 分鐘後停止</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_3">
        <source>Stop in 30 Minutes</source>
        <translation>30 分鐘後停止</translation>
    </message>
    <message id="ID_MENU_STOPRECORD_4">
        <source>Automatic Stop Settings…</source>
        <translation>自動停止設定…</translation>
    </message>
    <message id="Title">
        <source>Automatic Stop</source>
        <translation>自動停止</translation>
    </message>
    <message id="lblEnabledAutoStop">
        <source>Stop recording automatically</source>
        <translation>自動停止錄製</translation>
    </message>
    <message id="lblFileSizeSetTime">
        <source>After a duration of</source>
        <translation>錄製時間達到</translation>
    </message>
    <message id="lblFileSizeSetSizeNum">
        <source>When the file reaches</source>
        <translation>檔案大小達到</translation>
    </message>
    <message id="lblSecond">
        <source>seconds</source>
        <translation>秒</translation>
    </message>
    <message id="lblMB">
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message id="lblStopSettingOnce">
        <source>This recording only</source>
        <translation>僅限本次錄製</translation>
    </message>
    <message id="lblStopSettingEveryTime">
        <source>Every recording</source>
        <translation>每次錄製</translation>
    </message>
    <message id="lbComplete1">
        <source>When finished:</source>
        <translation>完成後：</translation>
    </message>
    <message id="chCtrl1">
        <source>Do nothing</source>
        <translation>不執行任何動作</translation>
    </message>
    <message id="chCtrl4">
        <source>Quit Capstan</source>
        <translation>結束 Capstan</translation>
    </message>
    <message id="btnOK">
        <source>OK</source>
        <translation>確定</translation>
    </message>
    <message id="btnCancel">
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message id="TM_MessageLabel_Title">
        <source>Recording Time Limit</source>
        <translation>錄製時間限制</translation>
    </message>
    <message id="TM_MessageLabel_Video">
        <source>Choose how long the video recording may last.</source>
        <translation>選擇影片錄製的最長時間。</translation>
    </message>
    <message id="TM_MessageLabel_Audio">
        <source>Choose how long the sound recording may last.</source>
        <translation>選擇錄音的最長時間。</translation>
    </message>
    <message id="TM_NoTime">
        <source>No limit</source>
        <translation>不限制</translation>
    </message>
    <message id="TM_30MinTime">
        <source>30 minutes</source>
        <translation>30 分鐘</translation>
    </message>
    <message id="TM_60MinTime">
        <source>60 minutes</source>
        <translation>60 分鐘</translation>
    </message>
    <message id="TM_CustonTime">
        <source>Custom</source>
        <translation>自訂</translation>
    </message>
    <message id="TM_OK">
        <source>OK</source>
        <translation>確定</translation>
    </message>
    <message id="lblEnabledAutoSplit">
        <source>Split recordings automatically</source>
        <translation>自動分割錄製檔案</translation>
    </message>
    <message id="lblSplitByTime">
        <source>By time, every</source>
        <translation>依時間分割，每</translation>
    </message>
    <message id="lblSplitBySize">
        <source>By size, every</source>
        <translation>依大小分割，每</translation>
    </message>
    <message id="Auto_lblSecond">
        <source>seconds</source>
        <translation>秒</translation>
    </message>
    <message id="Auto_lblMB">
        <source>MB</source>
        <translation>MB</translation>
    </message>
    <message id="Auto_lblStopSettingOnce">
        <source>This recording only</source>
        <translation>僅限本次錄製</translation>
    </message>
    <message id="Auto_lblStopSettingEveryTime">
        <source>Every recording</source>
        <translation>每次錄製</translation>
    </message>
    <message id="FileList">
        <source>Recordings</source>
        <translation>錄製清單</translation>
    </message>
    <message id="FileName">
        <source>Name</source>
        <translation>名稱</translation>
    </message>
    <message id="FileDuration">
        <source>Duration</source>
        <translation>長度</translation>
    </message>
    <message id="FileSize">
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message id="FileDate">
        <source>Date</source>
        <translation>日期</translation>
    </message>
    <message id="FileList_Play">
        <source>Play</source>
        <translation>播放</translation>
    </message>
    <message id="FileList_Edit">
        <source>Edit</source>
        <translation>編輯</translation>
    </message>
    <message id="FileList_OpenDir">
        <source>Show in Folder</source>
        <translation>在資料夾中顯示</translation>
    </message>
    <message id="FileList_Delete">
        <source>Delete</source>
        <translation>刪除</translation>
    </message>
    <message id="closeButton">
        <source>Close</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>關閉</translation>
    </message>
    <message id="miniaturizeButton">
        <source>Minimize</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>最小化</translation>
    </message>
    <message id="backhomeBtn">
        <source>Back</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>返回</translation>
    </message>
    <message id="framIm">
        <source>Quality</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>畫質</translation>
    </message>
    <message id="fpsIm">
        <source>Frame Rate</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>影格速率</translation>
    </message>
    <message id="captrueIm">
        <source>Camera</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>攝影機</translation>
    </message>
    <message id="audioIm">
        <source>Sound</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>聲音</translation>
    </message>
    <message id="onlyAudio_AudioTypeIm">
        <source>Sound Source</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>聲音來源</translation>
    </message>
    <message id="audioExtensionIm">
        <source>File Type</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>檔案類型</translation>
    </message>
    <message id="timeSetsBtn">
        <source>Time Limit</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>時間限制</translation>
    </message>
    <message id="splitSetsBtn">
        <source>Automatic Split</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>自動分割</translation>
    </message>
    <message id="fileListBtn">
        <source>Recordings</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>錄製清單</translation>
    </message>
    <message id="pencilBtn">
        <source>Drawing Tools</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>繪圖工具</translation>
    </message>
    <message id="screenShortBtn">
        <source>Screenshot</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>截圖</translation>
    </message>
    <message id="setsBtn">
        <source>Settings</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>設定</translation>
    </message>
    <message id="startSetsBtn">
        <source>Recording Options</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>錄製選項</translation>
    </message>
    <message id="btnStartRecrord">
        <source>Start Recording</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>開始錄製</translation>
    </message>
    <message id="btnStopRecord">
        <source>Stop Recording</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>停止錄製</translation>
    </message>
    <message id="btnPauseRecord">
        <source>Pause</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>暫停</translation>
    </message>
    <message id="btnContinueRecord">
        <source>Resume</source>
        <extracomment>Accessible name of a button that shows only an image.</extracomment>
        <translation>繼續</translation>
    </message>
</context>
</TS>
