#include "signage/displayFrame.h"
#include "signage/nDeckFolder.h"
#include <cstdlib>
#include <strings.h>

namespace {

bool isSameLayout(const _nDeckLayoutNode& one, const _nDeckLayoutNode& other)
{
    return one.file == other.file && one.md5 == other.md5 && one.fromdt == other.fromdt &&
           one.todt == other.todt;
}

} // namespace

_nDeckLayoutNode recordLayout(const _nDeckFileNode& record)
{
    _nDeckLayoutNode layout;
    layout.file = record.path;
    layout.md5 = record.md5;
    layout.fromdt = record.fromdt;
    layout.todt = record.todt;
    layout.eventType = record.eventType;
    return layout;
}

long long recordSize(const chString& size)
{
    const bool isHexadecimal = strncasecmp(size, "0x", 2) == 0;
    return strtoll(size, nullptr, isHexadecimal ? 16 : 10);
}

bool frameDiffers(const DisplayFrame& frame, const DisplayFrame& other)
{
    if (frame.medias.size() != other.medias.size() || frame.layouts.size() != other.layouts.size())
        return true;
    auto present = other.layouts.begin();
    for (const _nDeckLayoutNode& layout : frame.layouts) {
        if (!isSameLayout(layout, *present))
            return true;
        ++present;
    }
    return false;
}

nDeckNameSet frameMediaNames(const DisplayFrame& frame)
{
    nDeckNameSet names;
    for (const _nDeckFileNode& media : frame.medias)
        names.insert(media.path.GetText());
    return names;
}

void frameAddNames(const DisplayFrame& frame, nDeckNameSet& names)
{
    for (const _nDeckFileNode& media : frame.medias)
        names.insert(media.path.GetText());
    for (const _nDeckLayoutNode& layout : frame.layouts)
        names.insert(layout.file.GetText());
}

// A name cannot hold the line end between the two.
std::string frameContent(const chString& name, const chString& md5)
{
    return std::string(name.GetText()) + '\n' + md5.GetText();
}

void frameAddContents(const DisplayFrame& frame, nDeckNameSet& contents)
{
    for (const _nDeckFileNode& media : frame.medias)
        contents.insert(frameContent(media.path, media.md5));
    for (const _nDeckLayoutNode& layout : frame.layouts)
        contents.insert(frameContent(layout.file, layout.md5));
}

std::vector<chString> frameStrays(const nDeckNodeList& records, const DisplayFrame& shown,
                                  const DisplayFrame& wanted)
{
    nDeckNameSet names, contents;
    frameAddNames(shown, names);
    frameAddNames(wanted, names);
    frameAddContents(wanted, contents);
    std::vector<chString> strays;
    for (const _nDeckFileNode& record : records) {
        const chString plain = nDeckPlainName(record.path);
        const bool isNeeded = plain == record.path ? names.count(plain.GetText())
                                                   : contents.count(frameContent(plain, record.md5));
        if (!isNeeded)
            strays.push_back(record.path);
    }
    return strays;
}
