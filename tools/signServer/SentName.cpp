#include "tools/signServer/SentName.h"
#include "tools/signServer/RequestText.h"
#include <algorithm>

namespace {

constexpr qsizetype kLongestName = 140; // bytes

bool IsControl(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' || byte == 0x7f;
}

// The files that the phone keeps its own books in, and the copies of them.
bool IsPhonesOwn(const QByteArray& name)
{
    for (const char* own : {"filelist.xml", "display.xml", "register.tmp"}) {
        if (name == own || name.startsWith(QByteArray(own) + "."))
            return true;
    }
    return false;
}

} // namespace

QByteArray NameFault(const QByteArray& name)
{
    const QByteArray small = name.toLower();
    if (!ArrivesAsSent(name))
        return CannotBeSent;
    if (name.isEmpty() || name.contains('/') || name.contains('\\') || name.startsWith('.'))
        return "is fetched by no phone: its name is no bare file name";
    if (std::any_of(name.begin(), name.end(), IsControl))
        return "is fetched by no phone: a control character is in its name";
    if (name.size() > kLongestName)
        return "is fetched by no phone: its name has more than 140 bytes";
    if (IsPhonesOwn(small))
        return "is fetched by no phone: phones have a file of their own of that name";
    if (small.endsWith(".ing") || small.endsWith(".new"))
        return "is fetched by no phone: its name ends in .ing or .new";
    return QByteArray();
}
