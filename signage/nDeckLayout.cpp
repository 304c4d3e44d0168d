#include "signage/nDeckLayout.h"
#include "signage/mediaImage.h"
#include "signage/mediaVideo.h"
#include "signage/nDeckFileManager.h"
#include "signage/nDeckScreen.h"
#include "signage/nDeckShow.h"
#include "support/host/screen.h"
#include "support/host/trace.h"
#include "support/xml/xmlDocument.h"
#include "support/xml/xmlElement.h"
#include "support/xml/xmlFind.h"
#include <algorithm>
#include <cstdlib>

namespace {

// A name that the frame in force does not list keeps nobody waiting.
bool isAwaited(const char* kind, const chString& name)
{
    if (name.IsEmpty() || GetNDeckFileManager().IsFileExist(name, 0))
        return false;
    const DisplayFrame& frame = GetNDeckShow().GetDisplayFrame();
    if (!GetNDeckFileManager().IsFileExistByList(name, chString(), frame.medias))
        return false;
    nuxTrace(TRACE_DETAIL, "nDeckLayout:media file (%s:%s) is not down finished", kind, name.GetText());
    return true;
}

// The one that the region begins with; empty when that is no picture.
chString firstPicture(const nDeckRegion& region)
{
    const auto* image = region.empty() ? nullptr : dynamic_cast<const mediaImage*>(*region.begin());
    return image ? image->GetImageFileName() : chString();
}

// Empty for a medium without one.
chString fileOf(const mediaBase& media)
{
    if (const auto* image = dynamic_cast<const mediaImage*>(&media))
        return image->GetImageFileName();
    if (const auto* video = dynamic_cast<const mediaVideo*>(&media))
        return video->GetVideoFileName();
    return chString();
}

} // namespace

int nDeckLayout::SetLayoutContent(const char* name, const char* content, const char* md5)
{
    m_strName = name;
    m_strMd5 = md5;
    if (!content || !*content)
        return 0;
    xmlDocument document;
    const int whole = document.ParseDocument(content);
    xmlElement* root = document.GetRootElement();
    if (!root)
        return 0;
    m_bContent = true;
    m_nDuration = -1;
    m_bDrawn = false;
    m_regions.clear();
    m_strBackground = root->GetAttributeValue("background").GetString();
    m_strBgColor = root->GetAttributeValue("bgcolor").GetString();
    m_size.cx = atoi(root->GetAttributeValue("width").GetText());
    m_size.cy = atoi(root->GetAttributeValue("height").GetText());
    for (xmlElement* child = root->GetFirstChildElement(); child && m_regions.size() < LAYOUT_REGION_LIMIT;
         child = xmlGetNextElement(child)) {
        if (phraseConstTextA(child->GetName(), child->GetNameLength()).Same("region", 6))
            m_regions.append(this)->SetRegionByXML(child);
    }
    return whole;
}

void nDeckLayout::SetSchedule(const chTime& from, const chTime& to)
{
    m_from = from;
    m_to = to;
}

int nDeckLayout::GetLayoutDuration()
{
    if (m_nDuration != -1)
        return m_nDuration;
    for (const nDeckRegion& region : m_regions)
        m_nDuration = std::max(m_nDuration, region.GetRegionDuration());
    return m_nDuration;
}

void nDeckLayout::OnLayoutLoad()
{
    if (m_bMeeting) {
        RegisterSignalLamp(SIGNAL_LAMP_MEETING);
        if (GetNDeckScreen().IsWindowVisible())
            RegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
        else
            ResetScreenSavers(1, 0);
    }
    if (GetNDeckShow().IsShowLayout())
        ShowNdeckLayout();
}

void nDeckLayout::OnLayoutUnload()
{
    CloseMeetingLamp();
    for (nDeckRegion& region : m_regions)
        region.OnRegionUnload();
    if (GetNDeckScreen().IsFrameVisible())
        GetNDeckScreen().ClearPannels();
    m_bDrawn = false;
}

// A layout without a duration comes round every few milliseconds: what shows already is left alone.
void nDeckLayout::OnLayoutReload()
{
    const bool asLoaded = GetLayoutDuration() < 1 && IsShownAsLoaded();
    if (asLoaded) {
        CloseMeetingLamp();
        OnLayoutLoad();
        return;
    }
    const bool keeps = TakesTime();
    if (keeps)
        GetNDeckScreen().KeepPicture(QRect());
    OnLayoutUnload();
    OnLayoutLoad();
    if (keeps)
        GetNDeckScreen().ReleasePicture();
}

void nDeckLayout::ShowNdeckLayout()
{
    if (!IsMediaFileFinished()) {
        GetNDeckScreen().SetBackgroundImage(NDECK_LOADING_PICTURE);
        m_bDrawn = false;
        return;
    }
    ShowBackground();
    if (m_bDrawn && IsShownAsLoaded())
        return;
    for (nDeckRegion& region : m_regions)
        region.OnRegionLoad(this);
    m_bDrawn = true;
    if (GetNDeckScreen().IsFrameVisible())
        GetNDeckShow().PrepareAfter(*this);
}

void nDeckLayout::ShowBackground()
{
    if (m_strBackground.IsEmpty() && !m_strBgColor.IsEmpty())
        GetNDeckScreen().SetBackgroundColor(m_strBgColor);
    else
        GetNDeckScreen().SetBackgroundImage(m_strBackground);
}

bool nDeckLayout::IsShownAsLoaded()
{
    if (!m_bDrawn || !GetNDeckScreen().IsFrameVisible())
        return false;
    for (nDeckRegion& region : m_regions) {
        if (!region.IsShownAsLoaded())
            return false;
    }
    return true;
}

bool nDeckLayout::IsMediaFileFinished()
{
    for (const nDeckRegion& region : m_regions) {
        for (mediaBase* media : region) {
            if (!IsMediaFinished(*media))
                return false;
        }
    }
    if (m_strBackground.IsEmpty() || GetNDeckFileManager().IsFileExist(m_strBackground, 0))
        return true;
    nuxTrace(TRACE_DETAIL, "nDeckLayout:background image(%s) is not down finished",
             m_strBackground.GetText());
    return false;
}

bool nDeckLayout::IsMediaFinished(mediaBase& media) const
{
    if (const auto* image = dynamic_cast<const mediaImage*>(&media))
        return !isAwaited("image", image->GetImageFileName());
    if (const auto* video = dynamic_cast<const mediaVideo*>(&media))
        return !isAwaited("video", video->GetVideoFileName());
    return true;
}

std::vector<chString> nDeckLayout::GetFiles() const
{
    std::vector<chString> files;
    for (const nDeckRegion& region : m_regions) {
        for (const mediaBase* media : region) {
            if (!fileOf(*media).IsEmpty())
                files.push_back(fileOf(*media));
        }
    }
    if (!m_strBackground.IsEmpty())
        files.push_back(m_strBackground);
    return files;
}

void nDeckLayout::CloseMeetingLamp()
{
    if (!m_bMeeting)
        return;
    UnRegisterSignalLamp(SIGNAL_LAMP_OFF);
    UnRegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
}

bool nDeckLayout::TakesTime() const
{
    if (!GetNDeckScreen().IsFrameVisible())
        return false;
    bool isReady = m_strBackground.IsEmpty() || GetNDeckScreen().IsPictureReady(m_strBackground, nullptr);
    for (const nDeckRegion& region : m_regions) {
        for (const mediaBase* media : region)
            isReady = isReady && media->GetMediaType() != MEDIA_TYPE_TEXT;
        const chString first = firstPicture(region);
        isReady =
            isReady && (first.IsEmpty() || GetNDeckScreen().IsPictureReady(first, &region.GetRegionRect()));
    }
    return !isReady;
}

void nDeckLayout::Prepare() const
{
    if (!m_strBackground.IsEmpty())
        GetNDeckScreen().PreparePicture(m_strBackground, nullptr);
    for (const nDeckRegion& region : m_regions) {
        const chString first = firstPicture(region);
        if (!first.IsEmpty())
            GetNDeckScreen().PreparePicture(first, &region.GetRegionRect());
    }
}
