#include "sip/sdpBody.h"
#include <algorithm>
#include <cctype>
#include <vector>

namespace {

struct tagFound
{
    std::string sdp;
    bool bRequired = false; // a part that is not understood says that it has to be
    bool bUnsaid = false;   // one says nothing
};

bool isSdp(const tagBodyPart& part)
{
    const bool isMeant = part.disposition.empty() || part.disposition == "session";
    return isMeant && part.type == "application/sdp" && !part.bCoded;
}

// Of a text that the phone is told: a control that is no end of a line.
bool isLeftOut(char c)
{
    const bool isLayout = c == '\r' || c == '\n' || c == '\t';
    return iscntrl(static_cast<unsigned char>(c)) != 0 && !isLayout;
}

void leaveOut(const tagBodyPart& part, tagFound& found)
{
    found.bUnsaid = found.bUnsaid || part.disposition.empty();
    found.bRequired = found.bRequired || (!part.disposition.empty() && !part.bOptional);
}

void look(const tagBodyPart& part, int depth, tagFound& found);

// Of alternatives the last one that is understood counts, and the others are as if they were not there.
void lookInto(const std::vector<tagBodyPart>& parts, bool isChoice, int depth, tagFound& found)
{
    tagFound inner;
    for (const tagBodyPart& part : parts) {
        tagFound here;
        look(part, depth, here);
        if (inner.sdp.empty() || (isChoice && !here.sdp.empty()))
            inner.sdp = here.sdp;
        inner.bRequired = inner.bRequired || here.bRequired;
        inner.bUnsaid = inner.bUnsaid || here.bUnsaid;
    }
    if (isChoice && !inner.sdp.empty())
        inner.bRequired = inner.bUnsaid = false;
    if (found.sdp.empty())
        found.sdp = inner.sdp;
    found.bRequired = found.bRequired || inner.bRequired;
    found.bUnsaid = found.bUnsaid || inner.bUnsaid;
}

void look(const tagBodyPart& part, int depth, tagFound& found)
{
    std::vector<tagBodyPart> parts;
    if (isSdp(part)) {
        found.sdp = bodyParts::plainBytes(part);
        found.bRequired = part.bBase64 && found.sdp.empty();
        // The phone is told no controls: nothing at all would stand for a caller who wants an offer.
        if (std::all_of(found.sdp.begin(), found.sdp.end(), isLeftOut))
            std::replace_if(found.sdp.begin(), found.sdp.end(), isLeftOut, '?');
        if (depth > 0 && !found.sdp.empty() && found.sdp.back() != '\n')
            found.sdp += "\r\n"; // which belongs to the mark behind the part
    } else if (part.type.rfind("multipart/", 0) != 0 || part.bCoded || depth >= sdpBody::DEPTH_MAX) {
        leaveOut(part, found);
    } else if (bodyParts::split(part.bytes, part.nSize, part.boundary, parts) && !parts.empty()) {
        lookInto(parts, part.type == "multipart/alternative", depth + 1, found);
    } else {
        leaveOut(part, found);
    }
}

} // namespace

// A part that says nothing beside a description is taken for something that can be left out: many servers add
// one, and the standard's own examples do not say more. Where there is nothing else, it was meant.
tagSdpBody sdpBody::read(const tagBodyPart& whole)
{
    tagFound found;
    look(whole, 0, found);
    return {found.sdp, found.bRequired || (found.bUnsaid && found.sdp.empty())};
}
