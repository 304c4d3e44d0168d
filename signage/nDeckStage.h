#pragma once
// The frame and its full-screen window as the rest of the room knows them. User-interface thread.
#include "signage/nDeckScreen.h"

class nDeckStage : public nDeckScreen
{
public:
    void SetBackgroundImage(const chString& name) override;
    void SetBackgroundColor(const chString& color) override;
    nDeckPlace* CreatePanel(const chRect& rect) override;
    void ClearPannels() override;
    void KeepPicture(const QRect& rect) override;
    void ReleasePicture() override;
    void AwaitText(QWebView* view) override;
    void AwaitPicture(nDeckPicture* picture) override;
    bool IsPictureReady(const chString& name, const chRect* rect) override;
    void PreparePicture(const chString& name, const chRect* rect) override;
    bool IsFrameVisible() const override;
    bool IsFrameFullScreen() const override;
    E_NDECKWINDOW_TYPE GetFrameType() const override;
    float GetRectRate() const override;
    bool IsWindowVisible() const override;
    E_NDECKWINDOW_TYPE GetWindowType() const override;
    void HideWindow() override;
};
