#include "tools/imageScale/ScaleOrder.h"

namespace {

const std::string kMark = "@&@";

// The last word with the mark before it is cut off; false when there is none.
bool takeLast(std::string& rest, std::string& word)
{
    const size_t at = rest.rfind(" " + kMark);
    if (at == std::string::npos)
        return false;
    word = rest.substr(at + 1 + kMark.size());
    rest.erase(at);
    return !word.empty();
}

bool takeSide(std::string& rest, int& side)
{
    std::string digits;
    if (!takeLast(rest, digits) || digits.size() > 5 ||
        digits.find_first_not_of("0123456789") != std::string::npos)
        return false;
    side = std::stoi(digits);
    return side >= 1 && side <= ScaleOrder::SIDE_LIMIT;
}

} // namespace

// From the end: what the phone chose itself stands there, and the source may hold a mark too.
bool ScaleOrder::parse(const std::string& argument)
{
    std::string rest = argument;
    if (!takeLast(rest, strVerdict) || !takeLast(rest, strTarget) || !takeSide(rest, nHeight) ||
        !takeSide(rest, nWidth) || rest.compare(0, kMark.size(), kMark) != 0)
        return false;
    strSource = rest.substr(kMark.size());
    return !strSource.empty();
}
