#pragma once
#include "signage/nDeckRegion.h"
#include "support/container/chList.h"
#include "support/host/clock.h"
#include "support/host/geometry.h"
#include <vector>

class nDeckDisplay;

#define NDECK_LOADING_PICTURE HX_THEME("misc/nDeck_Loading.jpg")

enum { LAYOUT_REGION_LIMIT = 64 }; // region elements taken of one layout

// One layout of the show. User-interface thread.
class nDeckLayout
{
public:
    nDeckLayout() = default;
    // Made inside the list of a display.
    explicit nDeckLayout(nDeckDisplay*) {}
    nDeckLayout(const nDeckLayout&) = delete;
    nDeckLayout& operator=(const nDeckLayout&) = delete;

    // content: the text of the layout file. 0 when it is empty or damaged: the layout then has the regions
    // that were read, or none.
    int SetLayoutContent(const char* name, const char* content, const char* md5);
    // Its file was not in use when its content was read: there is none, or that of another schedule.
    void SetLate(bool late) { m_bLate = late; }
    bool IsLate() const { return m_bLate; }
    bool HasContent() const { return m_bContent; }
    void SetSchedule(const chTime& from, const chTime& to);
    void SetMeeting(int meeting) { m_bMeeting = meeting; }
    int IsMettingLayout() const { return m_bMeeting; }
    // Both ends count.
    bool IsScheduleOnReady(const chTime& now) const { return m_from <= now && now <= m_to; }
    bool IsSchedulePassed(const chTime& now) const { return m_to <= now; }
    // The longest region, in ms; -1 when there is no region.
    int GetLayoutDuration();

    void OnLayoutLoad();
    void OnLayoutUnload();
    // Loads it anew at the end of its round.
    void OnLayoutReload();
    void ShowNdeckLayout();
    // Nothing that the layout shows is still on its way.
    bool IsMediaFileFinished();
    void CloseMeetingLamp();
    // The files that it shows, its background included.
    std::vector<chString> GetFiles() const;
    chTime GetEnd() const { return m_to; }

    const chString& GetName() const { return m_strName; }
    const chString& GetMd5() const { return m_strMd5; }
    const chSize& GetSize() const { return m_size; }
    const chString& GetBackground() const { return m_strBackground; }
    const chString& GetBgColor() const { return m_strBgColor; }
    const chObjList_dynamic<nDeckRegion, 16>& GetRegions() const { return m_regions; }
    // Something that it begins with could not be drawn at once.
    bool TakesTime() const;
    // Reads the pictures ahead that it begins with.
    void Prepare() const;

private:
    bool IsMediaFinished(mediaBase& media) const;
    bool IsShownAsLoaded();
    void ShowBackground();

    chObjList_dynamic<nDeckRegion, 16> m_regions;
    int m_nDuration = -1;
    chTime m_from;
    chTime m_to;
    chString m_strName;
    chString m_strMd5;
    chSize m_size;
    chString m_strBgColor;
    chString m_strBackground;
    int m_bMeeting = 0;
    bool m_bDrawn = false; // its regions are loaded
    bool m_bLate = false;
    bool m_bContent = false;
};
