#include "signage/nDeckRegion.h"
#include "signage/mediaImage.h"
#include "signage/mediaText.h"
#include "signage/mediaVideo.h"
#include "signage/nDeckScreen.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include "support/xml/xmlElement.h"
#include "support/xml/xmlFind.h"
#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

int numberOf(xmlElement* element, const char* attribute)
{
    const long value = strtol(element->GetAttributeValue(attribute).GetText(), nullptr, 10);
    return int(std::clamp<long>(value, INT_MIN / 4, INT_MAX / 4));
}

// A file of the signage folder; a name that leads out of it is none.
chString fileOf(xmlElement* element)
{
    const chString name = element->GetAttributeValue("path").GetString();
    return pathIsSafeName(name) ? name : chString();
}

// The amount and the direction stand without quotes of their own.
chString htmlOf(xmlElement* element)
{
    const chString body = xmlGetDataContent(element, "text");
    const phraseStringA& direction = element->GetAttributeValue("direction");
    if (body.GetLength() > REGION_TEXT_LIMIT)
        return chString();
    if (direction.IsEmpty() || direction == "none")
        return body;
    const chString way = direction.GetString();
    return chString("<marquee direction=") + way +
           " scrollamount=" + element->GetAttributeValue("scrollamount").GetString() + " height=\"100%\">" +
           body + "</marquee>";
}

mediaBase* makeMedia(xmlElement* element)
{
    const phraseStringA& type = element->GetAttributeValue("type");
    if (type == "text") {
        auto* text = new mediaText;
        text->SetHtmlContent(htmlOf(element));
        return text;
    }
    if (type == "image") {
        auto* image = new mediaImage;
        image->SetImageFile(fileOf(element));
        return image;
    }
    if (type == "video") {
        auto* video = new mediaVideo;
        video->SetVideoFile(fileOf(element));
        return video;
    }
    return nullptr;
}

} // namespace

nDeckRegion::nDeckRegion() : m_current(end()) {}

nDeckRegion::~nDeckRegion()
{
    OnRegionUnload();
    for (mediaBase* media : *this)
        delete media;
}

int nDeckRegion::SetRegionByXML(xmlElement* element)
{
    const int left = numberOf(element, "left");
    const int top = numberOf(element, "top");
    const int width = numberOf(element, "width");
    const int height = numberOf(element, "height");
    nuxTrace(TRACE_DETAIL, "nDeckRegion::SetRegionByXML(%d,%d,%d,%d)", left, top, width, height);
    m_rect.left = std::clamp<int>(left, -REGION_OFFSET_LIMIT, REGION_OFFSET_LIMIT);
    m_rect.top = std::clamp<int>(top, -REGION_OFFSET_LIMIT, REGION_OFFSET_LIMIT);
    m_rect.right = m_rect.left + std::clamp<int>(width, 0, REGION_WIDTH_LIMIT);
    m_rect.bottom = m_rect.top + std::clamp<int>(height, 0, REGION_HEIGHT_LIMIT);
    for (xmlElement* child = element->GetFirstChildElement(); child && size() < REGION_MEDIA_LIMIT;
         child = xmlGetNextElement(child)) {
        if (phraseConstTextA(child->GetName(), child->GetNameLength()).Same("media", 5))
            AppendMedia(child);
    }
    m_current = end();
    return 1;
}

void nDeckRegion::AppendMedia(xmlElement* element)
{
    mediaBase* media = makeMedia(element);
    if (!media)
        return;
    media->SetDuration(element->GetAttributeValue("duration").GetText());
    media->SetPhoneNumber(element->GetAttributeValue("phoneNum").GetString());
    push_back(media);
}

int nDeckRegion::OnRegionLoad(nDeckLayout*)
{
    if (empty())
        return 0;
    m_pPanel = GetNDeckScreen().CreatePanel(m_rect);
    m_pPanel->SetRegion(this);
    LoadNextMedia();
    return 1;
}

void nDeckRegion::OnRegionUnload()
{
    m_timer.KillTimer();
    m_current = end();
    if (m_pPanel && m_pPanel->GetRegion() == this)
        m_pPanel->SetRegion(nullptr);
    m_pPanel = nullptr;
}

void nDeckRegion::LoadNextMedia()
{
    if (empty())
        return;
    if (++m_current == end())
        m_current = begin();
    // The panel may have gone back to the pool, and to another region, in the meantime.
    if (m_pPanel && m_pPanel->GetRegion() == this)
        m_pPanel->UpdatePanelMedia(*m_current);
    PrepareNext();
    if (size() > 1)
        m_timer.SetTimer(std::max((*m_current)->GetDuration(), 1), nullptr, this,
                         &nDeckRegion::OnTimerLoadNextMedia);
}

// A picture takes its time, and its turn comes.
void nDeckRegion::PrepareNext()
{
    iterator next = m_current;
    if (++next == end())
        next = begin();
    const auto* image = next == m_current ? nullptr : dynamic_cast<const mediaImage*>(*next);
    if (image && m_pPanel && GetNDeckScreen().IsFrameVisible())
        GetNDeckScreen().PreparePicture(image->GetImageFileName(), &m_rect);
}

int nDeckRegion::OnTimerLoadNextMedia(msgObject&)
{
    LoadNextMedia();
    return 1;
}

int nDeckRegion::GetRegionDuration() const
{
    long long sum = 0;
    for (const mediaBase* media : *this)
        sum += media->GetDuration();
    return int(std::clamp<long long>(sum, INT_MIN, INT_MAX));
}

mediaBase* nDeckRegion::GetCurrentMedia()
{
    return m_current == end() ? nullptr : *m_current;
}

bool nDeckRegion::IsShownAsLoaded()
{
    if (empty())
        return true;
    return size() == 1 && m_pPanel && m_pPanel->GetRegion() == this && m_current != end() &&
           m_pPanel->IsShowing(**m_current);
}
