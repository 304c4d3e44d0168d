#include "signage/nDeckStage.h"
#include "signage/nDeckFrame.h"
#include "signage/nDeckPanel.h"
#include "signage/nDeckWindow.h"

nDeckScreen& GetNDeckScreen()
{
    static nDeckStage stage;
    return stage;
}

void nDeckStage::SetBackgroundImage(const chString& name)
{
    GetnDeckFrame().SetBackgroundImage(name, true);
}

void nDeckStage::SetBackgroundColor(const chString& color)
{
    GetnDeckFrame().SetBackgroundColor(color);
}

nDeckPlace* nDeckStage::CreatePanel(const chRect& rect)
{
    return GetnDeckFrame().CreatePanel(rect);
}

void nDeckStage::ClearPannels()
{
    GetnDeckFrame().ClearPannels();
}

void nDeckStage::KeepPicture(const QRect& rect)
{
    GetnDeckFrame().KeepPicture(rect);
}

void nDeckStage::ReleasePicture()
{
    GetnDeckFrame().ReleasePicture();
}

void nDeckStage::AwaitText(QWebView* view)
{
    GetnDeckFrame().AwaitText(view);
}

void nDeckStage::AwaitPicture(nDeckPicture* picture)
{
    GetnDeckFrame().AwaitPicture(picture);
}

bool nDeckStage::IsPictureReady(const chString& name, const chRect* rect)
{
    return nDeckPictureIsReady(GetnDeckFrame().PictureWish(name, rect));
}

void nDeckStage::PreparePicture(const chString& name, const chRect* rect)
{
    picturePrepare(GetnDeckFrame().PictureWish(name, rect));
}

bool nDeckStage::IsFrameVisible() const
{
    return GetnDeckFrame().isVisible();
}

bool nDeckStage::IsFrameFullScreen() const
{
    return GetnDeckFrame().parentWidget() == &GetnDeckWindow();
}

E_NDECKWINDOW_TYPE nDeckStage::GetFrameType() const
{
    return GetnDeckFrame().GetNDeckType();
}

float nDeckStage::GetRectRate() const
{
    return GetnDeckFrame().GetRectRate();
}

bool nDeckStage::IsWindowVisible() const
{
    return GetnDeckWindow().isVisible();
}

E_NDECKWINDOW_TYPE nDeckStage::GetWindowType() const
{
    return GetnDeckWindow().getNDeckWindowType();
}

void nDeckStage::HideWindow()
{
    GetnDeckWindow().hide();
}
