#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/tagCall.h"
#include "support/host/message.h"
#include "support/host/registry.h"

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";
const char* const kSection = "DND";
const char* const kOn = "bEnable";
const char* const kPstn = "bEffectPstn";

} // namespace

bool doNotDisturb::isOn()
{
    return nuxGetRegistryInt(kUserFile, kSection, kOn, 0) != 0;
}

bool doNotDisturb::setOn(bool on)
{
    if (!nuxSetRegistryInt(kUserFile, kSection, kOn, on))
        return false;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PHONE, 0);
    return true;
}

bool doNotDisturb::refuses(int line)
{
    return isOn() && (line != PHONE_LINE_PSTN || nuxGetRegistryInt(kUserFile, kSection, kPstn, 0) != 0);
}
