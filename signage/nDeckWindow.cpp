#include "signage/nDeckWindow.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckVideoManager.h"
#include "support/host/image.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include <QApplication>
#include <QEvent>

namespace {

const QRect kFullScreen(0, 0, NDECK_WIDTH, NDECK_HEIGHT);

bool mayShow()
{
    return GetNDeckRegister().MayShow();
}

bool isLayoutCurrent()
{
    return GetNDeckDispaly().GetCurrentLayout() != GetNDeckDispaly().end();
}

void displayInWindow(int bShow, E_NDECKWINDOW_TYPE type)
{
    nDeckWindow& window = GetnDeckWindow();
    window.setNDeckWindowType(type);
    if (!bShow) {
        window.closeWindow();
        return;
    }
    screenBringUp(&window);
    if (GetNDeckDispaly().IsMettingCurrentLayout())
        RegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
}

void showFrame(bool bRefresh, E_NDECKWINDOW_TYPE type, const QWidget* parent)
{
    nDeckFrame& frame = GetnDeckFrame();
    if (!frame.isVisible())
        frame.ShownDeckFrame(1);
    GetNDeckDispaly().SetShowLayout(1);
    if (!mayShow()) {
        nuxTrace(TRACE_DETAIL, "nDeckWindowDisplay show  but register failed then show default layout");
        frame.SetBackgroundImage(NDECK_DEFAULT_PICTURE, true);
        return;
    }
    if (bRefresh && isLayoutCurrent())
        GetNDeckDispaly().GetCurrentLayout()->ShowNdeckLayout();
    if (!bRefresh && type == NDECK_WINDOW_TALK && !GetNDeckVideoManager().IsMoviePlaying() && parent &&
        parent->isActiveWindow())
        GetNDeckVideoManager().StartPlayVideo();
}

} // namespace

bool nDeckWindowDisplay(int bShow, E_NDECKWINDOW_TYPE type, QWidget* parent, QRect rect)
{
    nDeckDisplay& display = GetNDeckDispaly();
    if (!display.IsNdeckEnable())
        return false;
    if (bShow)
        OnLaunchNDeck();
    nDeckFrame& frame = GetnDeckFrame();
    if (!parent)
        displayInWindow(bShow, type);
    if (!display.GetLayoutsCount()) {
        nuxTrace(TRACE_DETAIL, "nDeckWindowDisplay layouts =0  then show default layout");
        frame.SetBackgroundImage(NDECK_DEFAULT_PICTURE, true);
    }
    const bool bRefresh = frame.IsRefreshFrame();
    nuxTrace(TRACE_DETAIL, "bIsRefreshFrame = (%d) bIsShowed = (%d)", bRefresh, bShow);
    if (bShow && (!mayShow() || (bRefresh && isLayoutCurrent())))
        frame.ClearPannels();
    frame.SetNDeckType(type);
    frame.SetRectRate(CaculateRectRate(rect, kFullScreen));
    frame.SetFrameParent(parent ? parent : &GetnDeckWindow(), rect);
    if (bShow)
        showFrame(bRefresh, type, parent);
    else if (frame.isVisible())
        frame.ShownDeckFrame(0);
    return true;
}

nDeckWindow::nDeckWindow(QWidget* parent) : QDialog(parent, Qt::FramelessWindowHint)
{
    setObjectName("nDeckWindow");
    setGeometry(kFullScreen);
    QPalette look = palette();
    look.setBrush(QPalette::Window, QBrush(GetImageManager()->GetImage(HX_THEME("general/gen_bg.jpg"))));
    setPalette(look);
}

nDeckWindow::~nDeckWindow() = default;

// What a person opened holds the screen saver off while it shows.
void nDeckWindow::setNDeckWindowType(E_NDECKWINDOW_TYPE type)
{
    m_eType = type;
    if (isVisible())
        holdScreenSaver(type == NDECK_WINDOW_PAGE);
}

void nDeckWindow::holdScreenSaver(bool hold)
{
    if (hold == m_bHoldsSaver)
        return;
    m_bHoldsSaver = hold;
    if (hold)
        RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    else
        UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
}

void nDeckWindow::closeWindow()
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    UnRegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
    m_bHoldsSaver = false;
    hide();
}

void nDeckWindow::updateScreenSaver()
{
    if (m_eType == NDECK_WINDOW_IDLE)
        hide();
}

bool nDeckWindow::event(QEvent* event)
{
    const bool taken = QDialog::event(event);
    if (event->type() == QEvent::WindowActivate) {
        nuxTrace(TRACE_DETAIL, "-----nDeckWindow installEventFilter----------");
        qApp->installEventFilter(this);
    } else if (event->type() == QEvent::WindowDeactivate) {
        nuxTrace(TRACE_DETAIL, "-----nDeckWindow removeEventFilter----------");
        qApp->removeEventFilter(this);
        hide();
    }
    return taken;
}

void nDeckWindow::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    m_bKeyPressed = false;
    holdScreenSaver(m_eType == NDECK_WINDOW_PAGE);
}

// The frame goes with the window, whoever closed it, so that the next show draws it anew.
void nDeckWindow::hideEvent(QHideEvent* event)
{
    QDialog::hideEvent(event);
    if (GetnDeckFrame().parentWidget() == this)
        GetnDeckFrame().hide();
    holdScreenSaver(false);
}

bool nDeckWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (!isVisible() || !isActiveWindow() || !isChildOf(watched, this))
        return false;
    switch (event->type()) {
    case QEvent::FocusIn:
        onFocusIn();
        return false;
    case QEvent::KeyPress:
        m_bKeyPressed = true;
        return false;
    case QEvent::KeyRelease:
        return onKeyRelease(event->spontaneous());
    case QEvent::MouseButtonPress:
        if (m_eType != NDECK_WINDOW_IDLE || watched->inherits("QPushButton"))
            return false;
        hide();
        return true;
    default:
        return false;
    }
}

void nDeckWindow::onFocusIn()
{
    nDeckFrame& frame = GetnDeckFrame();
    const bool wasElsewhere = frame.IsRefreshFrame() || frame.parentWidget() != this;
    frame.ShownDeckFrame(1);
    frame.SetFrameParent(this, QRect(0, 0, -1, -1));
    setNDeckWindowType(m_eType);
    frame.SetNDeckType(m_eType);
    show();
    if (!wasElsewhere)
        return;
    frame.ShownDeckFrame(1);
    frame.Refresh();
}

// A key that was pressed before it showed has opened it.
bool nDeckWindow::onKeyRelease(bool fromPad)
{
    if (fromPad && !m_bKeyPressed)
        return true;
    if (m_eType == NDECK_WINDOW_PAGE)
        closeWindow();
    else if (m_eType == NDECK_WINDOW_IDLE)
        hide();
    return true;
}

nDeckWindow& GetnDeckWindow()
{
    static nDeckWindow* window = new nDeckWindow;
    return *window;
}
