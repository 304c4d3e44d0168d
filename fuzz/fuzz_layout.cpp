// Layout files of the signage server. Whatever is in one, the layout is bounded, and its rectangles fit to be
// drawn.
#include "fuzz/fuzzRoot.h"
#include "signage/mediaText.h"
#include "signage/nDeckLayout.h"
#include <QCoreApplication>
#include <cstdlib>
#include <string>

namespace {

void checkMedia(const mediaBase& media)
{
    // The marquee around a running text is made of attributes, which are bounded by the file.
    if (const auto* text = dynamic_cast<const mediaText*>(&media))
        expect(text->GetHtmlContent().GetLength() <= (2 << 20));
    expect(media.GetDuration() % 1000 == 0);
}

void checkRegion(const nDeckRegion& region)
{
    const chRect& rect = region.GetRegionRect();
    expect(std::abs(rect.left) <= REGION_OFFSET_LIMIT && std::abs(rect.top) <= REGION_OFFSET_LIMIT);
    expect(rect.right >= rect.left && rect.right - rect.left <= REGION_WIDTH_LIMIT);
    expect(rect.bottom >= rect.top && rect.bottom - rect.top <= REGION_HEIGHT_LIMIT);
    expect(region.size() <= REGION_MEDIA_LIMIT);
    for (const mediaBase* media : region)
        checkMedia(*media);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static int count = 1;
    static char name[] = "fuzz_layout";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
    const std::string content(reinterpret_cast<const char*>(data), size);
    nDeckLayout layout;
    layout.SetLayoutContent("layout.xml", content.c_str(), "md5");
    expect(layout.GetRegions().size() <= LAYOUT_REGION_LIMIT);
    for (const nDeckRegion& region : layout.GetRegions())
        checkRegion(region);
    layout.GetLayoutDuration();
    return 0;
}
