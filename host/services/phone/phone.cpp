#include "support/host/phone.h"
#include "host/services/phone/phoneService.h"
#include "host/services/players/speaker.h"
#include "host/services/system/hostLog.h"

namespace {

phoneBackend& backend()
{
    return phoneService::instance().backend();
}

} // namespace

int phone_GetAccountInfoById(int index, tagAccountInfo* info)
{
    if (index < 0 || index >= PHONE_ACCOUNT_COUNT || !info)
        return 0;
    *info = backend().account(index);
    return 1;
}

int phone_GetDefaultAccount(tagAccountInfo* info)
{
    return phone_GetAccountInfoById(backend().defaultAccount(), info);
}

void phone_RegAccountNotify(chMsgProcesser* processer, int account)
{
    phoneService::instance().addAccountNotify(processer, account);
}

void phone_UnRegAccountNotify(chMsgProcesser* processer, int account)
{
    phoneService::instance().removeAccountNotify(processer, account);
}

int phone_CallNumber(const char* number, int account, int flags)
{
    const QString dialled = QString::fromUtf8(number);
    hostLog("dial", QString("%1 %2 %3").arg(dialled).arg(account).arg(flags));
    return phoneService::instance().rules().dial(dialled, account) != 0;
}

int phone_GetCallTotal()
{
    return backend().callTotal();
}

int phone_IsPhoneInTalk()
{
    return backend().isInTalk();
}

int phone_GetPSTNEnable()
{
    return backend().hasPstn();
}

void phone_PlayDTMF(int key)
{
    speaker::instance().playTone(key);
}

int phone_PlayRing(const char* file, int loop)
{
    return speaker::instance().playRing(file, loop != 0);
}

void phone_StopRing(int)
{
    speaker::instance().stopRing();
}

void phone_SetVoiceInfo(voiceInfo* info)
{
    speaker::instance().claim(info);
}

void phone_RemoveVoiceInfo(voiceInfo* info)
{
    speaker::instance().unclaim(info);
}

int dev_get_output_volume()
{
    return speaker::instance().volume();
}

void dev_set_output_volume(int volume)
{
    speaker::instance().setVolume(volume);
}

int dev_get_output_mute()
{
    return speaker::instance().isMute();
}

void dev_set_output_mute(int mute)
{
    speaker::instance().setMute(mute != 0);
}
