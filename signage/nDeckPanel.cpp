#include "signage/nDeckPanel.h"
#include "media/videoAssistant.h"
#include "signage/NdeckWidgetPoolManager.h"
#include "signage/mediaImage.h"
#include "signage/mediaText.h"
#include "signage/mediaVideo.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckPicture.h"
#include "signage/nDeckVideoManager.h"
#include "signage/serverConfig.h"
#include "support/host/browser.h"
#include "support/host/button.h"
#include "support/host/image.h"
#include "support/host/phone.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include "support/host/webview.h"
#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <algorithm>

namespace {

const char* const kPausePicture = HX_THEME("misc/video_pause.jpg");

enum { BUTTON_WIDTH = 120, BUTTON_HEIGHT = 31, BUTTON_FONT = 18, BUTTON_WEIGHT = 75 };

template <class T>
bool isKind(QWidget* widget)
{
    return qobject_cast<T*>(widget) != nullptr;
}

// A widget of the kind, in panel: a free one of the pool, or a new one.
template <class T>
T* takeContent(QWidget* panel, bool (*fits)(QWidget*))
{
    NdeckWidgetPoolManager& pool = GetNdeckWidgetPoolManager();
    if (QWidget* widget = pool.Take(fits)) {
        widget->setParent(panel);
        return static_cast<T*>(widget);
    }
    T* made = new T(panel);
    pool.Add(made);
    return made;
}

// Of a view whose text is not on the screen yet.
const char* const kLoading = "loading";

void setText(QWebView& view, const QString& html)
{
    if (view.html() != html || !view.isLoaded()) {
        view.setProperty(kLoading, !html.isEmpty());
        view.setHtml(html, QUrl());
    }
    if (html.isEmpty() || !view.property(kLoading).toBool())
        return;
    QObject::connect(
        &view, &QWebView::loadFinished, &view, [&view] { view.setProperty(kLoading, false); },
        Qt::SingleShotConnection);
    GetNDeckScreen().AwaitText(&view);
}

bool isTalkWithoutVideo()
{
    return !nDeckPlaysVideoInTalk() && GetNDeckScreen().GetFrameType() == NDECK_WINDOW_TALK;
}

QRect regionRect(const chRect& region)
{
    return QRect(region.left, region.top, region.right - region.left, region.bottom - region.top);
}

} // namespace

nDeckPanel::nDeckPanel(QWidget* parent) : QWidget(parent) {}

nDeckPanel::~nDeckPanel() = default;

void nDeckPanel::ForgetWidgets()
{
    m_pContent = nullptr;
    m_pBtnDial = nullptr;
    m_pBtnUrl = nullptr;
    m_pRegion = nullptr;
    qApp->removeEventFilter(this);
    m_bFiltering = false;
}

void nDeckPanel::UpdatePanelMedia(mediaBase* media)
{
    if (!media)
        return;
    const bool keeps = m_pContent && isVisible() && TakesTime(*media);
    if (keeps)
        GetNDeckScreen().KeepPicture(geometry());
    ReleaseContent();
    if (auto* image = dynamic_cast<mediaImage*>(media))
        UpdatePicture(*image);
    else if (auto* text = dynamic_cast<mediaText*>(media))
        UpdateRichText(*text);
    else if (auto* video = dynamic_cast<mediaVideo*>(media))
        UpdateVideo(*video);
    nuxTrace(TRACE_DETAIL, " getphoneNumber(%s)", media->GetPhoneNumber().GetText());
    RemoveDialButton();
    if (!media->GetPhoneNumber().IsEmpty())
        MakeDialButton(*media);
    if (keeps)
        GetNDeckScreen().ReleasePicture();
}

// It is not on the screen as soon as it is asked for.
bool nDeckPanel::TakesTime(const mediaBase& media) const
{
    const auto* image = dynamic_cast<const mediaImage*>(&media);
    if (!image)
        return media.GetMediaType() == MEDIA_TYPE_TEXT;
    return !GetNDeckScreen().IsPictureReady(image->GetImageFileName(), &m_original);
}

void nDeckPanel::ReleaseContent()
{
    if (!m_pContent)
        return;
    if (isKind<videoAssistant>(m_pContent)) {
        GetNDeckVideoManager().StopPlayVideo(0);
    } else if (auto* picture = qobject_cast<nDeckPicture*>(m_pContent)) {
        picture->Forget();
        picture->hide();
    } else if (auto* view = qobject_cast<QWebView*>(m_pContent)) {
        view->setHtml(QString());
        view->hide();
    }
    m_pContent->setParent(nullptr);
    GetNdeckWidgetPoolManager().DestroyWidget(m_pContent);
    m_pContent = nullptr;
}

// Right and bottom of the panel's rectangle lie inside it.
QRect nDeckPanel::ContentRect() const
{
    return QRect(QPoint(0, 0), m_panelRect.bottomRight() - m_panelRect.topLeft());
}

bool nDeckPanel::UpdatePicture(mediaImage& media)
{
    const chString path = nDeckPath(media.GetImageFileName());
    auto* label = takeContent<nDeckPicture>(this, isKind<nDeckPicture>);
    m_pContent = label;
    label->setGeometry(ContentRect());
    if (!GetNDeckFileManager().IsFileExist(media.GetImageFileName(), 1))
        return false;
    label->setScaledContents(true);
    label->lower();
    label->ShowFile(path);
    if (!label->IsSettled())
        GetNDeckScreen().AwaitPicture(label);
    return !label->IsSettled() || !label->pixmap().isNull();
}

bool nDeckPanel::UpdateRichText(mediaText& media)
{
    auto* view = takeContent<QWebView>(this, isKind<QWebView>);
    m_pContent = view;
    view->setStyleSheet("background-color: rgba(255, 255, 255, 0%);selection-color: rgba(255, 255, 255, "
                        "255);selection-background-color: rgba(255, 255, 255,255);");
    view->setGeometry(ContentRect());
    view->setZoomFactor(double(GetNDeckScreen().GetRectRate()));
    setText(*view, toQString(media.GetHtmlContent()));
    view->setLinkDelegationPolicy(QWebView::DontDelegateLinks);
    view->lower();
    view->show();
    return true;
}

bool nDeckPanel::UpdateVideo(mediaVideo& media)
{
    const chString path = nDeckPath(media.GetVideoFileName());
    auto* video = takeContent<videoAssistant>(this, isKind<videoAssistant>);
    QPalette look = video->palette();
    look.setColor(QPalette::Window, Qt::black);
    video->setPalette(look);
    video->setAutoFillBackground(true);
    video->clear();
    video->SetFrame(QImage());
    video->SetHideRect(QRect(0, 0, -1, -1), 1, 1);
    m_pContent = video;
    if (!GetNDeckFileManager().IsFileExist(media.GetVideoFileName(), 1))
        nuxTrace(TRACE_DETAIL, "nDeckPanel::UpdateVideo (%s) is not in filelist",
                 media.GetVideoFileName().GetText());
    video->setGeometry(ContentRect());
    GetNDeckVideoManager().SetPlayFile(path);
    PlaceVideo(*video);
    video->show();
    if (!isVisible())
        return true;
    if (isTalkWithoutVideo()) {
        ShowPause(*video);
        return true;
    }
    video->ShowVideoViewer(1);
    video->ShowBackground(0);
    GetNDeckVideoManager().StartPlayVideo();
    return true;
}

// The video plane shows what its alignment allows, in pixels of the screen.
void nDeckPanel::PlaceVideo(videoAssistant& video)
{
    QRect screen;
    video.SetVideoRect(QRect(), 0);
    video.GetVideoRect(screen);
    GetNDeckVideoManager().SetPlayRegion(
        chRect(screen.left(), screen.top(), screen.left() + screen.width(), screen.top() + screen.height()));
    video.SetVideoRect(regionRect(GetNDeckVideoManager().GetPlayRegion()), 1);
}

void nDeckPanel::ShowPause(videoAssistant& video)
{
    video.ShowBackground(1);
    video.setScaledContents(true);
    video.setPixmap(GetImageManager()->GetImage(kPausePicture));
    video.ShowVideoViewer(1);
}

void nDeckPanel::RemoveDialButton()
{
    if (!m_pBtnDial)
        return;
    m_pBtnDial->hide();
    disconnect(m_pBtnDial, nullptr, this, nullptr);
    m_pBtnDial->setParent(nullptr);
    m_pBtnDial->deleteLater();
    m_pBtnDial = nullptr;
}

void nDeckPanel::MakeDialButton(const mediaBase& media)
{
    m_pBtnDial = new QPushButton(this);
    // Nobody is called by an OK that was meant for something else.
    m_pBtnDial->setAutoDefault(false);
    setFontStyle(BUTTON_FONT, BUTTON_WEIGHT, m_pBtnDial, 1);
    m_pBtnDial->setStyleSheet(m_pBtnDial->styleSheet() + "QPushButton{color:rgb(255,255,255)}");
    SetButton3StatusImage(m_pBtnDial, HX_THEME("button/btn_normal_ndeck0.png"),
                          HX_THEME("button/btn_normal_ndeck1.png"), HX_THEME("button/btn_normal_ndeck2.png"));
    SetButtonNoLine(m_pBtnDial);
    m_pBtnDial->setText(toQString(media.GetPhoneNumber()));
    m_pBtnDial->setGeometry(DialButtonRect(m_panelRect.width(), m_panelRect.height()));
    m_pBtnDial->show();
    m_pBtnDial->raise();
    connect(m_pBtnDial, &QPushButton::clicked, this, &nDeckPanel::btnDialNumber_click);
    CutHoleForButton();
}

QRect nDeckPanel::DialButtonRect(int width, int height) const
{
    if (width >= BUTTON_WIDTH && height >= BUTTON_HEIGHT)
        return QRect(QPoint(width / 2 - BUTTON_WIDTH / 2, height - BUTTON_HEIGHT),
                     QPoint(width / 2 + BUTTON_WIDTH / 2 - 1, height - 1));
    const float rate = GetNDeckScreen().GetRectRate();
    const int buttonWidth = int(std::min<int>(width, BUTTON_WIDTH) * rate);
    const int buttonHeight = int(std::min<int>(height, BUTTON_HEIGHT) * rate);
    return QRect(width / 2 - buttonWidth / 2, height - buttonHeight, buttonWidth, buttonHeight);
}

// The video lies over the widgets: the button needs a hole in it.
void nDeckPanel::CutHoleForButton()
{
    auto* video = qobject_cast<videoAssistant*>(m_pContent);
    if (!video || !m_pBtnDial)
        return;
    QRect picture;
    video->GetVideoRect(picture);
    const QRect hole = qMapRectToGlobal(m_pBtnDial, m_pBtnDial->rect()) & picture;
    QRect old;
    video->GetHideRect(old);
    if (!hole.isEmpty() && (old.isEmpty() || !hole.contains(old)))
        video->SetHideRect(hole, 0, 1);
}

bool nDeckPanel::IsShowing(const mediaBase& media) const
{
    const QString number = toQString(media.GetPhoneNumber());
    if (!m_pContent || (m_pBtnDial ? m_pBtnDial->text() : QString()) != number)
        return false;
    if (const auto* image = dynamic_cast<const mediaImage*>(&media)) {
        const auto* picture = qobject_cast<const nDeckPicture*>(m_pContent);
        return picture && picture->IsShowing(nDeckPath(image->GetImageFileName())) &&
               GetNDeckFileManager().IsFileExist(image->GetImageFileName(), 0);
    }
    if (const auto* text = dynamic_cast<const mediaText*>(&media)) {
        const auto* view = qobject_cast<const QWebView*>(m_pContent);
        return view && view->isLoaded() && view->html() == toQString(text->GetHtmlContent());
    }
    return isKind<videoAssistant>(m_pContent);
}

bool nDeckPanel::event(QEvent* event)
{
    if (!m_bFiltering && eventFilter(this, event))
        return true;
    const bool taken = QWidget::event(event);
    if (event->type() == QEvent::WindowActivate) {
        nuxTrace(TRACE_DETAIL, "-----nDeckPanel installEventFilter----------");
        qApp->installEventFilter(this);
        m_bFiltering = true;
    } else if (event->type() == QEvent::WindowDeactivate) {
        nuxTrace(TRACE_DETAIL, "-----nDeckPanel removeEventFilter----------");
        qApp->removeEventFilter(this);
        m_bFiltering = false;
    }
    return taken;
}

bool nDeckPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != this || event->type() != QEvent::Resize)
        return false;
    OnResize();
    return true;
}

void nDeckPanel::OnResize()
{
    const float rate = GetNDeckScreen().GetRectRate();
    nuxTrace(TRACE_DETAIL, "nDeckPanel::eventFilter fRcRate(%0.2f)", double(rate));
    const int width = int((m_original.right - m_original.left) * rate);
    const int height = int((m_original.bottom - m_original.top) * rate);
    const QObjectList all = children();
    for (QObject* child : all) {
        if (child->isWidgetType())
            ResizeChild(static_cast<QWidget*>(child), width, height);
    }
    CutHoleForButton();
    update();
}

void nDeckPanel::ResizeChild(QWidget* child, int width, int height)
{
    if (isKind<QPushButton>(child)) {
        child->setGeometry(DialButtonRect(width, height));
        return;
    }
    child->setGeometry(QRect(QPoint(0, 0), QPoint(width - 1, height - 1)));
    if (auto* view = qobject_cast<QWebView*>(child))
        view->setZoomFactor(double(GetNDeckScreen().GetRectRate()));
    auto* video = qobject_cast<videoAssistant*>(child);
    if (!video)
        return;
    if (isTalkWithoutVideo()) {
        ShowPause(*video);
        GetNDeckVideoManager().StopPlayVideo(0);
        return;
    }
    video->clear();
    video->SetHideRect(QRect(0, 0, -1, -1), 1, 1);
    video->ShowBackground(0);
    video->ShowVideoViewer(1);
    PlaceVideo(*video);
}

void nDeckPanel::btnDialNumber_click()
{
    if (GetNDeckScreen().IsFrameFullScreen() && m_pBtnDial)
        phone_CallNumber(fromQString(m_pBtnDial->text()), -1, -1);
}

void nDeckPanel::btnDialUrl_click()
{
    if (m_pBtnUrl)
        browserShow(fromQString(m_pBtnUrl->text()));
}
