#include "frame/roomHooks.h"

namespace {
// Needs no constructor to run: rooms set their fields while the module is being loaded.
tagRoomHooks s_hooks = {};
} // namespace

tagRoomHooks& roomHooks()
{
    return s_hooks;
}
