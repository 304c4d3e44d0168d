#pragma once
#include "signage/mediaBase.h"
#include "support/container/chList.h"
#include "support/host/geometry.h"
#include "support/host/message.h"

class nDeckLayout;
class nDeckPlace;
class xmlElement;

enum {
    REGION_MEDIA_LIMIT = 256,       // media elements taken of one region
    REGION_TEXT_LIMIT = 256 * 1024, // bytes of one rich text
    // In pixels of the design: what a rectangle of a layout file is cut to.
    REGION_OFFSET_LIMIT = 4096,
    REGION_WIDTH_LIMIT = 2400,
    REGION_HEIGHT_LIMIT = 1440
};

// A rectangle of a layout and the media that take turns in it, which it owns. User-interface thread.
class nDeckRegion : public chObjList_dynamic<mediaBase*, 16>, public chMsgProcesser
{
public:
    nDeckRegion();
    // Made inside the list of a layout.
    explicit nDeckRegion(nDeckLayout*) : nDeckRegion() {}
    ~nDeckRegion() override;

    // element: the "region" element of a layout file. Always 1.
    int SetRegionByXML(xmlElement* element);
    // In layout coordinates; right is left + width and bottom top + height.
    const chRect& GetRegionRect() const { return m_rect; }

    // Takes a panel and shows the first media. 0 when the region is empty.
    int OnRegionLoad(nDeckLayout* layout);
    void OnRegionUnload();
    void LoadNextMedia();
    int OnTimerLoadNextMedia(msgObject& msg);
    // The sum over its media, in ms.
    int GetRegionDuration() const;

    // The media on turn; null when idle.
    mediaBase* GetCurrentMedia();
    // True when its panel shows already what loading it anew would show.
    bool IsShownAsLoaded();

private:
    void AppendMedia(xmlElement* element);
    void PrepareNext();

    chRect m_rect;
    iterator m_current;
    nDeckPlace* m_pPanel = nullptr;
    chThreadTimer m_timer;
};
