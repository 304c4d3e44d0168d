#include "tests/desktop/signageStand.h"
#include "host/desktop/displayClient.h"
#include "host/services/system/netWorld.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include "support/host/player.h"
#include "support/host/registry.h"
#include <QHash>
#include <QKeyEvent>

namespace {

const char* const kConfig = "/rundata/config/system.ini";

// The client's full-screen window: a touch or a key ends it and goes no further.
class ShowWindow : public QWidget
{
public:
    ShowWindow() : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        setObjectName("showWindow");
        setGeometry(0, 0, 800, 480);
    }

protected:
    void keyReleaseEvent(QKeyEvent*) override { hide(); }
    void mousePressEvent(QMouseEvent*) override { hide(); }
};

QFrame& theFrame()
{
    static QFrame* frame = [] {
        auto* made = new QFrame;
        made->setObjectName("frmNdeckFrame");
        return made;
    }();
    return *frame;
}

QWidget& theWindow()
{
    static ShowWindow* window = new ShowWindow;
    return *window;
}

QString nameOf(QWidget* parent)
{
    return parent ? QString(parent->metaObject()->className()) : QString("screen");
}

bool isOn()
{
    return nuxGetRegistryInt(kConfig, "nDeck", "bEnable", 0) == 1;
}

// Where the frame has been, it goes by itself when the window that it is in is left for that one.
class Places : public QObject
{
public:
    void add(QWidget* window, const QRect& rect)
    {
        if (!m_rects.contains(window))
            window->installEventFilter(this);
        m_rects.insert(window, rect);
    }
    void clear()
    {
        for (QWidget* window : m_rects.keys())
            window->removeEventFilter(this);
        m_rects.clear();
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::WindowDeactivate && theFrame().parent() == watched)
            moveOn();
        return false;
    }

private:
    void moveOn()
    {
        QWidget* window = kit::windows().value(0);
        if (window == theFrame().parent()) {
            theFrame().hide();
            return;
        }
        const bool isKnown = m_rects.contains(window);
        theFrame().setParent(isKnown ? window : nullptr);
        theFrame().setGeometry(m_rects.value(window));
        theFrame().setVisible(isKnown);
    }
    QHash<QWidget*, QRect> m_rects;
};

Places& thePlaces()
{
    static Places places;
    return places;
}

void place(int show, QWidget* parent, const QRect& rect)
{
    QWidget* owner = parent ? parent : &theWindow();
    if (!parent)
        owner->setVisible(show != 0);
    thePlaces().add(owner, rect);
    theFrame().setParent(owner);
    theFrame().setGeometry(rect);
    theFrame().setVisible(show != 0);
}

} // namespace

QStringList& SignageTest::told()
{
    static QStringList list;
    return list;
}

SignageTest::Switches& SignageTest::switches()
{
    static Switches record;
    return record;
}

VOICE_PARAM*& SignageTest::record()
{
    static VOICE_PARAM* pointer = nullptr;
    return pointer;
}

QWidget* SignageTest::frame()
{
    return &theFrame();
}

SignageTest::SignageTest()
{
    forget();
    switches() = Switches();
    netWorld().state = NET_UP;
    tagModuleEntries entries;
    entries.registerDisplay = [] { told().append("register"); };
    entries.unLaunchDisplay = [] { told().append("end"); };
    entries.isDisplayEnabled = isOn;
    entries.isDisplaySaverEnabled = [] { return switches().saver; };
    entries.isDisplayTalkEnabled = [] { return switches().talk; };
    entries.isDisplayRingBackEnabled = [] { return switches().ringBack; };
    entries.windowDisplay = [](int show, E_NDECKWINDOW_TYPE type, QWidget* parent, QRect rect) {
        told().append(QString("%1 %2 %3 %4,%5 %6x%7")
                          .arg(show ? "show" : "hide")
                          .arg(type)
                          .arg(nameOf(parent))
                          .arg(rect.x())
                          .arg(rect.y())
                          .arg(rect.width())
                          .arg(rect.height()));
        if (!isOn() || !switches().shows)
            return false;
        place(show, parent, rect);
        return true;
    };
    entries.setPlayParam = [](VOICE_PARAM* param, int session) {
        told().append(QString("param %1 %2").arg(session).arg(param ? param->nAudLocalPort : 0));
        record() = param;
        return true;
    };
    entries.onMovieMessage = [](msgObject& msg) {
        told().append(QString("movie %1").arg(msg.message, 0, 16));
        return 1;
    };
    hostSetModule(entries);
}

SignageTest::~SignageTest()
{
    thePlaces().clear();
    theFrame().setParent(nullptr);
    theWindow().hide();
    hostSetModule(tagModuleEntries());
}

void SignageTest::switchClient(int on)
{
    nuxSetRegistryInt(kConfig, "nDeck", "bEnable", on);
    EXPECT_TRUE(kit::waitUntil([on] { return displayClient::instance().isEnabled() == (on == 1); }));
}
