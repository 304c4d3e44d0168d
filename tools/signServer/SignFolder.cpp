#include "tools/signServer/SignFolder.h"
#include <algorithm>

namespace {

constexpr qint64 kLargestText = 4 << 20; // bytes of a file that is read whole
constexpr int kLongestName = 255;

} // namespace

bool IsBareName(const QByteArray& name)
{
    if (name.isEmpty() || name.size() > kLongestName || name[0] == '.')
        return false;
    return std::none_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < ' ' || byte == 0x7f || c == '/' || c == '\\';
    });
}

QByteArray SignFolder::Content(const char* name) const
{
    const OpenFile file(PathOf(name));
    return file.IsGood() ? file.Read(0, std::min(file.Size(), kLargestText)) : QByteArray();
}

OpenFilePtr SignFolder::Open(const QByteArray& kind, const QByteArray& name) const
{
    const char* folder = kind == "layout"  ? "layouts/"
                         : kind == "media" ? "media/"
                         : kind == "icon"  ? "icons/"
                                           : nullptr;
    if (!folder || !IsBareName(name))
        return nullptr;
    auto file = std::make_shared<OpenFile>(PathOf(folder) + name);
    return file->IsGood() ? file : nullptr;
}
