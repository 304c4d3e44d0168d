#pragma once
// A phone that nobody uses, with its home screen and real savers.
#include "host/desktop/displayClient.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/idleSaver.h"
#include "host/screen/screenState.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "media/mediaShows.h"
#include "support/host/desktop.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/screen.h"
#include "support/host/upgrade.h"
#include "tests/kit/kitTime.h"
#include "tests/media/showTest.h"
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <qpa/qwindowsysteminterface.h>

inline const char* const kUserIni = "/rundata/config/user/user.ini";
inline const QPoint kTile(80, 270); // of the home screen
inline int s_nOpened = 0;

inline tagModuleEntries saverEntries()
{
    tagModuleEntries entries;
    entries.openPage = [](const chString&, QWidget*) { ++s_nOpened; };
    entries.openMenu = [](const chString&) { ++s_nOpened; };
    entries.startPhotoSaver = StartScreenSaver_ImageView;
    entries.stopPhotoSaver = StopScreenSaver_ImageView;
    entries.startFilmSaver = StartScreenSaver_VideoView;
    entries.stopFilmSaver = StopScreenSaver_VideoView;
    entries.openSleep = OpenScreenSleepDlg;
    entries.closeSleep = CloseScreenSleepDlg;
    entries.isDisplayEnabled = [] {
        return nuxGetRegistryInt("/rundata/config/system.ini", "nDeck", "bEnable", 0) == 1;
    };
    return entries;
}

// A page with something typed on it.
class TypedPage : public QWidget
{
public:
    TypedPage() : QWidget(nullptr, Qt::FramelessWindowHint), edit(this)
    {
        setObjectName("page");
        setGeometry(0, 0, 800, 480);
        edit.setGeometry(100, 100, 200, 36);
        screenBringUp(this);
        kit::settle();
        edit.setFocus();
        kit::settle();
    }
    QLineEdit edit;
};

// One of another room, for whoever asks for its class.
class NamedPage : public QWidget
{
public:
    explicit NamedPage(const char* name) : QWidget(nullptr, Qt::FramelessWindowHint), m_name(name)
    {
        setObjectName("named");
        setGeometry(0, 0, 800, 480);
        screenBringUp(this);
        kit::settle();
    }
    void* qt_metacast(const char* name) override
    {
        return m_name == name ? this : QWidget::qt_metacast(name);
    }

private:
    const QByteArray m_name;
};

class IdleSaver : public ShowTest
{
protected:
    explicit IdleSaver(bool hasCallScreen = true)
    {
        kit::holdClocks(true);
        hostSetModule(saverEntries());
        phoneService::instance().backend();
        setTimes(60, 0);
        home = frmDesktop::GetInstance();
        if (hasCallScreen)
            callScreenInstall();
        home->FinishLoading();
        saver = home->findChild<idleSaver*>();
        putPictures(2);
        touch();
        mark();
    }
    ~IdleSaver() override
    {
        CAutoUpgrade::GetInstance()->SetUpgrading(0);
        hangUpAll();
        Stop_ImageView();
        Stop_VideoView();
        CloseScreenSleepDlg();
        for (QWidget* window : kit::windows())
            window->hide();
        kit::settle();
        hostSetModule(tagModuleEntries());
    }

    static void set(const char* section, const char* key, int value)
    {
        EXPECT_EQ(nuxSetRegistryInt(kUserIni, section, key, value), 1);
    }
    // Seconds; as when the phone has started with them.
    static void setTimes(int saver, int sleep)
    {
        set("ScreenSaver", "nTimeout", saver);
        set("Sleep", "nTimeout", sleep);
        screenState::instance().restartIdle();
    }
    static void touch()
    {
        kit::settle();
        kit::tap(QPoint(495, 165)); // where nothing is
        kit::settle();
    }
    static QString top()
    {
        kit::settle();
        return kit::windows().isEmpty() ? QString() : kit::windows().first()->objectName();
    }
    static void tellSettings()
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_WALLPAPER, 0);
        kit::settle();
    }
    static void ring()
    {
        EXPECT_TRUE(phoneSimulation::instance()->ring("333", 0, "Anna"));
        kit::settle();
    }
    // Or the caller gives up after a minute.
    static void answer()
    {
        EXPECT_TRUE(phoneService::instance().answer(phoneService::instance().calls().first().nId));
        kit::settle();
    }
    static void hangUpAll()
    {
        for (const tagCall& call : phoneService::instance().calls())
            phoneService::instance().hangUp(call.nId);
        kit::settle();
    }
    static bool isDark() { return !screenState::instance().isBacklightOn(); }
    static bool isBlack()
    {
        const QImage screen = kit::screen();
        return screen.pixel(5, 5) == 0xff000000u && screen.pixel(400, 240) == 0xff000000u;
    }
    // A key that is held, and repeats itself.
    static void keyAgain(QEvent::Type type, Qt::Key key, const QString& text = {})
    {
        QWindowSystemInterface::handleKeyEvent<QWindowSystemInterface::SynchronousDelivery>(
            QGuiApplication::focusWindow(), type, key, Qt::NoModifier, text, true);
        kit::settle();
    }

    frmDesktop* home = nullptr;
    idleSaver* saver = nullptr;
};
