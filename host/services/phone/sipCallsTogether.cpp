// Calls whose other sides talk with each other and the user.
#include "host/services/phone/sipCalls.h"

bool sipCalls::join(int id, int other)
{
    tagLive* one = findTalking(id);
    tagLive* two = findTalking(other);
    if (!one || !two || one == two || one->call.nJoined || two->call.nJoined || !m_media.join(id, other))
        return false;
    one->call.nJoined = other;
    two->call.nJoined = id;
    one->bJoinAgain = two->bJoinAgain = false;
    tellBoth(id, other);
    return true;
}

bool sipCalls::split(int id)
{
    tagLive* one = findTalking(id);
    tagLive* two = one ? find(one->call.nJoined) : nullptr;
    if (!two)
        return false;
    const int other = two->call.nId;
    one->call.nJoined = two->call.nJoined = 0;
    m_media.split(id);
    tellBoth(id, other);
    return true;
}

// Media that are new can join nobody before both have sound.
void sipCalls::joinAgain(tagLive& live)
{
    tagLive* other = live.bJoinAgain ? findTalking(live.call.nJoined) : nullptr;
    if (!other || live.call.streams.strSound.isEmpty() || other->call.streams.strSound.isEmpty())
        return;
    if (m_media.join(live.call.nId, other->call.nId))
        live.bJoinAgain = other->bJoinAgain = false;
}

// Who is told of the first may end the second.
void sipCalls::tellBoth(int id, int other)
{
    for (const int each : {id, other}) {
        if (const tagLive* live = find(each))
            tell(*live);
    }
}
