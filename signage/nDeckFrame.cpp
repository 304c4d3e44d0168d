#include "signage/nDeckFrame.h"
#include "media/videoAssistant.h"
#include "signage/NdeckWidgetPoolManager.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckPanel.h"
#include "signage/nDeckRegister.h"
#include "signage/nDeckVideoManager.h"
#include "support/host/image.h"
#include "support/host/screen.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "support/host/webview.h"
#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <algorithm>
#include <cstring>

namespace {

const char* const kGeneralPicture = HX_THEME("general/gen_bg.jpg");
const char* const kTheme = HX_THEME("");
const QRect kFullScreen(0, 0, NDECK_WIDTH, NDECK_HEIGHT);
constexpr int kLookMs = 100; // a file is looked at no more often

// One of the phone's own, which takes less than a frame. With another shape it fills the frame all the same.
QPixmap filling(const char* path, QSize size)
{
    const QPixmap pixmap = GetImageManager()->GetImageByScale(path, size.width(), size.height());
    if (pixmap.isNull() || pixmap.size() == size)
        return pixmap;
    return GetImageManager()->GetImage(path).scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

bool isOfTheme(const chString& path)
{
    return strncmp(path, kTheme, strlen(kTheme)) == 0;
}

chString backgroundPath(const chString& name)
{
    if (name.IsEmpty() || strchr(name, '/'))
        return name;
    return nDeckPath(name);
}

QRect scaled(const chRect& rect, float rate)
{
    return QRect(int(rect.left * rate), int(rect.top * rate), int((rect.right - rect.left) * rate),
                 int((rect.bottom - rect.top) * rate));
}

nDeckPanel* takePanel(QWidget* frame)
{
    NdeckWidgetPoolManager& pool = GetNdeckWidgetPoolManager();
    QWidget* widget = pool.Take([](QWidget* w) { return qobject_cast<nDeckPanel*>(w) != nullptr; });
    if (widget) {
        widget->setParent(frame);
        return static_cast<nDeckPanel*>(widget);
    }
    auto* panel = new nDeckPanel(frame);
    pool.Add(panel);
    return panel;
}

} // namespace

float CaculateRectRate(const QRect& rect, QRect full)
{
    return std::min(float(rect.width()) / float(full.width()), float(rect.height()) / float(full.height()));
}

void setResizeWidget(QWidget* w, float rate)
{
    for (QObject* child : w->children()) {
        auto* panel = qobject_cast<nDeckPanel*>(child);
        if (!panel)
            continue;
        panel->setGeometry(scaled(panel->GetOriginalRect(), rate));
        panel->update();
    }
}

nDeckFrame& GetnDeckFrame()
{
    static nDeckFrame* frame = new nDeckFrame;
    return *frame;
}

nDeckFrame::nDeckFrame(QWidget* parent) : QFrame(parent)
{
    setObjectName("frmNdeckFrame");
    resize(NDECK_WIDTH, NDECK_HEIGHT);
    setFrameShape(QFrame::StyledPanel);
    setFrameShadow(QFrame::Raised);
}

nDeckFrame::~nDeckFrame() = default;

nDeckPanel* nDeckFrame::CreatePanel(const chRect& rect)
{
    nuxTrace(TRACE_DETAIL, "nDeckFrame::CreatePanel(L:%d,R:%d,T:%d,B:%d)", rect.left, rect.right, rect.top,
             rect.bottom);
    nDeckPanel* panel = takePanel(this);
    panel->SetOriginalRect(rect);
    panel->SetPanelRect(scaled(rect, m_fRcRate));
    panel->setGeometry(panel->GetPanelRect());
    panel->show();
    return panel;
}

void nDeckFrame::ClearPannels()
{
    removeWidget(this);
}

void nDeckFrame::removeWidget(QWidget* widget)
{
    if (qobject_cast<QWebView*>(widget)) {
        widget->setParent(nullptr);
        GetNdeckWidgetPoolManager().DestroyWidget(widget);
        return;
    }
    const QObjectList children = widget->children();
    for (QObject* child : children) {
        if (child->isWidgetType() && !qobject_cast<nDeckCover*>(child))
            removeWidget(static_cast<QWidget*>(child));
    }
    if (widget != this)
        GiveBack(widget);
}

void nDeckFrame::GiveBack(QWidget* widget)
{
    if (auto* video = qobject_cast<videoAssistant*>(widget)) {
        GetNDeckVideoManager().StopPlayVideo(0);
        video->ShowVideoViewer(0);
        video->SetHideRect(QRect(0, 0, -1, -1), 1, 1);
    } else if (auto* picture = qobject_cast<nDeckPicture*>(widget)) {
        picture->Forget();
    } else if (auto* panel = qobject_cast<nDeckPanel*>(widget)) {
        panel->ForgetWidgets();
    }
    widget->hide();
    // A button may be the one whose press led here.
    if (qobject_cast<QPushButton*>(widget)) {
        widget->setParent(nullptr);
        widget->deleteLater();
        return;
    }
    GetNdeckWidgetPoolManager().DestroyWidget(widget);
}

void nDeckFrame::SetBackgroundImage(chString name, bool)
{
    m_strBackground = name;
    tagBackground wanted;
    wanted.strPath = backgroundPath(name);
    wanted.size = size();
    const bool isSame = IsBackground(wanted);
    if (isSame && m_looked.isValid() && m_looked.elapsed() < kLookMs)
        return;
    m_looked.start();
    fileStat(name.IsEmpty() ? kGeneralPicture : wanted.strPath.GetText(), wanted.stat);
    if (isSame && m_background.stat == wanted.stat)
        return;
    m_background = wanted;
    ReadBackground(wanted.strPath);
}

bool nDeckFrame::IsBackground(const tagBackground& wanted) const
{
    return autoFillBackground() && m_background.bColor == wanted.bColor &&
           m_background.strPath == wanted.strPath && m_background.size == wanted.size;
}

// The old one stays until the new one is there.
void nDeckFrame::ReadBackground(const chString& path)
{
    SettleBackground();
    if (path.IsEmpty() || (isOfTheme(path) && IsImageValid(path))) {
        TakeBackground(PICTURE_READ, path.IsEmpty() ? QPixmap() : filling(path, size()));
        return;
    }
    const tagPictureWish wish = nDeckBackgroundWish(path, size());
    m_nBackgroundRequest = pictureTell(wish, this, [this](PICTURE_RESULT result, const QPixmap& picture) {
        TakeBackground(result, picture);
        SettleBackground();
    });
    if (m_nBackgroundRequest && m_pCover)
        m_pCover->Await(this);
}

// The general background takes the place of a picture that is not fit to be shown.
void nDeckFrame::TakeBackground(PICTURE_RESULT result, const QPixmap& picture)
{
    if (result == PICTURE_REFUSED)
        nuxTrace(TRACE_DETAIL, "picture (%s) is invalid", m_background.strPath.GetText());
    SetBackgroundBrush(picture.isNull() ? filling(kGeneralPicture, size()) : picture);
}

// Nothing is waited for any more.
void nDeckFrame::SettleBackground()
{
    pictureCancel(m_nBackgroundRequest);
    m_nBackgroundRequest = 0;
    for (nDeckCover* cover : findChildren<nDeckCover*>(Qt::FindDirectChildrenOnly))
        cover->Arrived(this);
}

tagPictureWish nDeckFrame::PictureWish(const chString& name, const chRect* rect) const
{
    return rect ? nDeckPictureWish(nDeckPath(name), scaled(*rect, m_fRcRate).size())
                : nDeckBackgroundWish(backgroundPath(name), size());
}

void nDeckFrame::SetBackgroundColor(chString color)
{
    m_strBackground = color;
    tagBackground wanted;
    wanted.strPath = color;
    wanted.bColor = true;
    if (IsBackground(wanted))
        return;
    m_background = wanted;
    SettleBackground();
    QColor solid;
    solid.setNamedColor(toQString(color));
    SetBackgroundBrush(solid);
}

void nDeckFrame::SetBackgroundBrush(const QBrush& brush)
{
    setAutoFillBackground(true);
    QPalette look = palette();
    look.setBrush(QPalette::Window, brush);
    setPalette(look);
}

void nDeckFrame::SetBackgroundAgain()
{
    if (m_background.bColor)
        SetBackgroundColor(m_strBackground);
    else
        SetBackgroundImage(m_strBackground, true);
}

void nDeckFrame::SetFrameParent(QWidget* parent, QRect rect)
{
    if (!parent) {
        Detach();
        return;
    }
    if (!FindParent(parent)) {
        m_parents.append(tagParent{parent, rect});
        // A window that goes without a word would take the frame along.
        connect(parent, &QObject::destroyed, this, [this, parent] {
            if (parentWidget() == parent)
                Detach();
            DropParent(parent);
        });
    }
    setParent(parent);
    setGeometry(FindParent(parent)->rect);
}

void nDeckFrame::Detach()
{
    setParent(nullptr);
    setGeometry(QRect(0, 0, -1, -1));
    hide();
}

void nDeckFrame::ShownDeckFrame(int show)
{
    setVisible(show != 0);
}

nDeckFrame::tagParent* nDeckFrame::FindParent(QWidget* parent)
{
    for (tagParent& known : m_parents) {
        if (known.pWidget == parent)
            return &known;
    }
    return nullptr;
}

void nDeckFrame::DropParent(QWidget* parent)
{
    for (auto it = m_parents.begin(); it != m_parents.end(); ++it) {
        if (it->pWidget != parent)
            continue;
        m_parents.erase(it);
        disconnect(parent, nullptr, this, nullptr);
        return;
    }
}

QRect nDeckFrame::GetnDeckWidgetFromParent(QWidget* parent)
{
    const tagParent* known = FindParent(parent);
    return known ? known->rect : QRect();
}

bool nDeckFrame::FindnDeckWidgetFromParent(QWidget* parent)
{
    return FindParent(parent) != nullptr;
}

QWidget* nDeckFrame::GetFocusWidget()
{
    for (QWidget* window : QWSServer::clientWindows()) {
        if (!window->size().isEmpty())
            return window;
    }
    return nullptr;
}

void nDeckFrame::SetFocusnDeckWidgetParent()
{
    const tagParent* known = FindParent(GetFocusWidget());
    if (known)
        MoveTo(*known);
    else
        Detach();
}

void nDeckFrame::MoveTo(const tagParent& parent)
{
    const bool wasHidden = IsRefreshFrame();
    m_fRcRate = CaculateRectRate(parent.rect, kFullScreen);
    setParent(parent.pWidget);
    setGeometry(parent.rect);
    GetNDeckDispaly().SetShowLayout(1);
    show();
    if (wasHidden)
        Refresh();
}

void nDeckFrame::Refresh()
{
    nDeckDisplay& display = GetNDeckDispaly();
    display.SetShowLayout(1);
    ClearPannels();
    if (!GetNDeckRegister().MayShow() || display.GetCurrentLayout() == display.end())
        SetBackgroundImage(NDECK_DEFAULT_PICTURE, true);
    else
        display.GetCurrentLayout()->ShowNdeckLayout();
}

void nDeckFrame::BeforeParentDestory(QWidget* parent)
{
    DropParent(parent);
    SetFocusnDeckWidgetParent();
}

void nDeckFrame::OnFoucsIn()
{
    show();
}

// A window that goes away is still the topmost one when it is told.
void nDeckFrame::OnFoucsOut()
{
    if (GetFocusWidget() == parentWidget())
        hide();
    else
        SetFocusnDeckWidgetParent();
}

void nDeckFrame::KeepPicture(const QRect& rect)
{
    if (++m_nKeeps > 1 || !isVisible())
        return;
    m_pCover = new nDeckCover(this, rect.isNull() ? this->rect() : rect);
    EndCovers(m_pCover->geometry());
}

void nDeckFrame::ReleasePicture()
{
    if (--m_nKeeps > 0 || !m_pCover)
        return;
    m_pCover->Settle();
    m_pCover = nullptr;
}

void nDeckFrame::AwaitText(QWebView* view)
{
    if (m_pCover)
        m_pCover->AwaitText(view);
}

void nDeckFrame::AwaitPicture(nDeckPicture* picture)
{
    if (m_pCover)
        m_pCover->AwaitPicture(picture);
}

// Those inside of rect, or (null) all. What is being exchanged keeps its own, which shows what they showed.
void nDeckFrame::EndCovers(const QRect& rect)
{
    for (nDeckCover* cover : findChildren<nDeckCover*>(Qt::FindDirectChildrenOnly)) {
        if (cover != m_pCover && (rect.isNull() || rect.contains(cover->geometry())))
            cover->End();
    }
}

// Its own events come this way also while it does not see those of the application.
bool nDeckFrame::event(QEvent* event)
{
    if (!m_bFiltering)
        eventFilter(this, event);
    const bool taken = QFrame::event(event);
    switch (event->type()) {
    case QEvent::WindowActivate:
        InstallFilter();
        break;
    case QEvent::Show:
        // In a window that is active already nobody tells it so.
        if (isActiveWindow())
            InstallFilter();
        break;
    case QEvent::WindowDeactivate:
        RemoveFilter();
        hide();
        break;
    default:
        break;
    }
    return taken;
}

void nDeckFrame::InstallFilter()
{
    nuxTrace(TRACE_DETAIL, "-----nDeckFrame installEventFilter----------");
    qApp->installEventFilter(this);
    m_bFiltering = true;
}

void nDeckFrame::RemoveFilter()
{
    nuxTrace(TRACE_DETAIL, "-----nDeckFrame removeEventFilter----------");
    qApp->removeEventFilter(this);
    m_bFiltering = false;
}

bool nDeckFrame::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        if (watched == this)
            OnOwnEvent(event);
        break;
    case QEvent::Close:
        if (watched == parent())
            BeforeParentDestory(parentWidget());
        break;
    case QEvent::WindowActivate:
        if (watched != this && isChildOf(watched, this))
            OnFoucsIn();
        break;
    case QEvent::WindowDeactivate:
        if (watched == parent())
            OnFoucsOut();
        break;
    default:
        break;
    }
    return false;
}

void nDeckFrame::OnOwnEvent(QEvent* event)
{
    if (event->type() == QEvent::Show) {
        GetNDeckVideoManager().StartPlayVideo();
        return;
    }
    EndCovers(QRect());
    if (event->type() == QEvent::Hide) {
        GetNDeckVideoManager().PausePlayVideo();
        GetNDeckDispaly().SetShowLayout(0);
        return;
    }
    SetBackgroundAgain();
    if (GetNDeckScreen().IsFrameFullScreen())
        m_fRcRate = 1.0f;
    setResizeWidget(this, m_fRcRate);
}
