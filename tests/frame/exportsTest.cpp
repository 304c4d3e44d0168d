// What the built module shows to the world.
#include "places.h"
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStringList>
#include <gtest/gtest.h>

namespace {

QStringList exportedSymbols()
{
    QProcess nm;
    nm.start("nm", {"-D", "--defined-only", "-C", HX_BUILD_DIR "/lib/libhxSetting.so"});
    EXPECT_TRUE(nm.waitForFinished());
    QStringList names;
    for (const QString& line : QString::fromUtf8(nm.readAllStandardOutput()).split('\n', Qt::SkipEmptyParts))
        names.append(line.section(' ', 2));
    names.sort();
    return names;
}

// Every class that a room of the module makes known.
QStringList pageClasses()
{
    static const QRegularExpression line("^HX_PAGE\\((\\w+)\\);$", QRegularExpression::MultilineOption);
    QStringList pages;
    for (const char* room : {"frame", "settings", "media", "signage", "applets", "calibration"}) {
        QDirIterator files(QString(HX_SOURCE_DIR "/") + room, {"*.cpp"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            for (auto match = line.globalMatch(QString::fromUtf8(file.readAll())); match.hasNext();)
                pages.append(match.next().captured(1));
        }
    }
    return pages;
}

const char* const kText = "NUX_StringHelper::chReferenceStringT<char>";

QStringList entryPoints()
{
    const QString text = kText;
    QStringList names = {
        "CloseScreenSleepDlg()",
        "GetDateTime()",
        "GetDssKeySetting()",
        "GetNDeckDispaly()",
        "GetNDeckVideoManager()",
        "GetdlgPictureDialSetting()",
        "GetdlgWeahterSetting()",
        "OnUnLaunchNDeck()",
        "OpenScreenSleepDlg()",
        "PlayImageFile()",
        "PlayVideoFile()",
        "PreviewImageFile(char const*)",
        "PreviewVideoFile(char const*)",
        "RefreshOpenXml(" + text + " const&)",
        "S_STOCK_MAP",
        "S_STOCK_ROOTMEUN",
        "S_STOCK_TITLE",
        "S_STOCK_VALUE",
        "StartScreenSaver_ImageView()",
        "StartScreenSaver_VideoView()",
        "StopImagePlay()",
        "StopPreviewVideo()",
        "StopScreenSaver_ImageView()",
        "StopScreenSaver_VideoView()",
        "StopVideoPlay()",
        "Stop_ImageView()",
        "Stop_VideoView()",
        "UpdataStockData()",
        "dlgDialPlan::dlgDialPlan(QWidget*, tagLeftBarInfo*)",
        "dlgDialPlan::dlgDialPlan(QWidget*, tagLeftBarInfo*)", // complete, and as a base
        "dlgPictureDialSetting::ShowByIconViewItem(PicDialIconViewItem*)",
        "getIconView()",
        "dlgDssKeySetting::ShowByDsskeyIndex(int)",
        "dlgForward_Setting::Display_Always_Forward(Qt::CheckState, char const*)",
        "dlgForward_Setting::Display_Busy_Forward(Qt::CheckState, char const*)",
        "dlgForward_Setting::Display_No_Answer_Forward(Qt::CheckState, char const*, char const*)",
        "dlgForward_Setting::IsForwadingtoSelf(QString const&)",
        "dlgForward_Setting::initm_cur(QList<QObject*>)",
        "dlgForward_Setting::setNextFocus(int)",
        "dlgForward_Setting::setPreFocus(int)",
        "dlgSpeedDial::SetTabWgtRow(int)",
        "getScreenSaverDlg()",
        "getSoundDlg()",
        "getSpeedDialDialog()",
        "hack_tv",
        "hack_x",
        "hack_xxx",
        "hack_y",
        "nDeckDisplay::IsHoldEnable()",
        "nDeckDisplay::IsNdeckEnable()",
        "nDeckDisplay::IsPlayVideoInTalk()",
        "nDeckDisplay::IsRingBackEnable()",
        "nDeckDisplay::IsScreenSaverEnable()",
        "nDeckDisplay::IsVoiceTalkEnable()",
        "nDeckRegisterDisplay()",
        "nDeckVideoManager::OnMovieAdMessage(NUX_MsgQueueHelper::msgObject&)",
        "nDeckVideoManager::SetPlayParam(VOICE_PARAM*, int)",
        "nDeckWindowDisplay(int, E_NDECKWINDOW_TYPE, QWidget*, QRect)",
        "onRefreshIconView()",
        "perform_calibration(calibration*)",
        "samp",
        "passwordLineEdit::AddorMinusChars(QString)",
        "passwordLineEdit::initDisplayfromFile(char const*, char const*, char const*)",
        "passwordLineEdit::inputMethodEvent(QInputMethodEvent*)",
        "passwordLineEdit::makeConnect()",
        "passwordLineEdit::metaObject() const",
        "passwordLineEdit::passwordLineEdit()",
        "passwordLineEdit::passwordLineEdit()", // complete, and as a base
        "passwordLineEdit::passwordLineEdit(QWidget*)",
        "passwordLineEdit::passwordLineEdit(QWidget*)",
        "passwordLineEdit::qt_metacall(QMetaObject::Call, int, void**)",
        "passwordLineEdit::qt_metacast(char const*)",
        "passwordLineEdit::setReplacedChar(QString)",
        "passwordLineEdit::staticMetaObject",
        "settingCacheWindows(int)",
        "settingDialNum(qDialNumberItem*, QWidget*)",
        "settingIpCamera(IPCameraIconViewItem*, QWidget*)",
        "settingIpCamera_DoorPhone(QString const&, QString const&, QWidget*)",
        "settingOpenFrame(" + text + " const&)",
        "settingOpenPage(" + text + " const&, QWidget*)",
        "settingOpenPage(" + text + " const&, tagLeftBarInfo, QWidget*)",
        "settingOpenPage(int, " + text + ", " + text + ", QWidget*)",
        "settingOpenXml(" + text + " const&)",
        "settingPromptUserLevel(QString const&, QWidget*)",
        "settingRequestWeather(chReferObject, " + text + " const&)",
        "settingWeatherCity()",
        "ts_open(char const*, int)",
        "ts_read_raw(tsdev*, ts_sample*, int)",
        "xess",
        "yess",
        "__ts_attach(tsdev*, ts_module*)",
        "__ts_raw",
        "typeinfo for passwordLineEdit",
        "typeinfo name for passwordLineEdit",
        "vtable for passwordLineEdit",
    };
    for (const QString& page : pageClasses())
        names.append(QString("%1* PopupDialog<%1>(tagLeftBarInfo*, int, int, int)").arg(page));
    names.sort();
    return names;
}

} // namespace

TEST(Exports, AreTheEntryPointsAndThePagesOfAllRooms)
{
    EXPECT_EQ(exportedSymbols().join("\n").toStdString(), entryPoints().join("\n").toStdString());
}

TEST(Exports, HoldThePagesThatThisPhoneHas)
{
    const QStringList pages = pageClasses();
    for (const char* page : {"dlgPhoneBook",
                             "dlgContactEditor",
                             "dlgCallHistroy",
                             "dlgRemotePhoneBook",
                             "dlgLDAP",
                             "dlgWan",
                             "dlgAccount_Setting_Btn",
                             "dlgMediaManager",
                             "dlgSound",
                             "dlgScreenSaver",
                             "dlgPhone_Setting",
                             "dlgTvOutPut",
                             "dlgAutoServer",
                             "dlgCalibration",
                             "dlgSecurity",
                             "dlgStatus",
                             "dlgVersion_Detail",
                             "dlgDssKeyList",
                             "dlgVoice_Mail_Setting",
                             "dlgPictureDialSetting",
                             "dlgIpCamera"})
        EXPECT_TRUE(pages.contains(page)) << page;
}
