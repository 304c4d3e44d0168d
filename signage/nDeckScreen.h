#pragma once
// What the show asks of the frame that draws it, and what a part of the frame asks of the whole.
// User-interface thread.
#include "support/host/geometry.h"
#include "support/host/signage.h"
#include "support/text/chString.h"

class QRect;
class QWebView;
class mediaBase;
class nDeckPicture;
class nDeckRegion;

enum { NDECK_WIDTH = 800, NDECK_HEIGHT = 480 }; // the design size of every layout

// Where one region is on the screen.
class nDeckPlace
{
public:
    // The region that fills it; null when none does.
    virtual void SetRegion(nDeckRegion* region) = 0;
    virtual nDeckRegion* GetRegion() const = 0;
    virtual void UpdatePanelMedia(mediaBase* media) = 0;
    // True when it shows what UpdatePanelMedia would bring up, so that nothing has to be done.
    virtual bool IsShowing(const mediaBase& media) const = 0;

protected:
    virtual ~nDeckPlace() = default;
};

class nDeckScreen
{
public:
    // name: a picture in the signage folder, or a device path when it has a "/"; empty: the general
    // background.
    virtual void SetBackgroundImage(const chString& name) = 0;
    virtual void SetBackgroundColor(const chString& color) = 0; // as QColor::setNamedColor has it
    // A place at the rectangle, which is in layout coordinates (right: left + width). Stays the frame's.
    virtual nDeckPlace* CreatePanel(const chRect& rect) = 0;
    virtual void ClearPannels() = 0;
    // Between these two what rect shows (null: all of it) is exchanged: it stays on the screen until the
    // texts and pictures awaited meanwhile are there. They nest; the outermost pair counts.
    virtual void KeepPicture(const QRect& rect) = 0;
    virtual void ReleasePicture() = 0;
    virtual void AwaitText(QWebView* view) = 0;
    virtual void AwaitPicture(nDeckPicture* picture) = 0;
    // The picture could be drawn at once. rect: of its region, in layout coordinates (right: left + width);
    // null for the background, whose name is as SetBackgroundImage has it.
    virtual bool IsPictureReady(const chString& name, const chRect* rect) = 0;
    // Reads it ahead, so that it will be.
    virtual void PreparePicture(const chString& name, const chRect* rect) = 0;

    virtual bool IsFrameVisible() const = 0;
    virtual bool IsFrameFullScreen() const = 0; // it lives in the full-screen window
    virtual E_NDECKWINDOW_TYPE GetFrameType() const = 0;
    virtual float GetRectRate() const = 0; // from layout coordinates to those of the frame

    virtual bool IsWindowVisible() const = 0; // the full-screen one
    virtual E_NDECKWINDOW_TYPE GetWindowType() const = 0;
    virtual void HideWindow() = 0;

protected:
    virtual ~nDeckScreen() = default;
};

nDeckScreen& GetNDeckScreen();
