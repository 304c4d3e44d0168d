#pragma once
// Calls, accounts and the speaker. User-interface thread.
#include "support/host/api.h"
#include "support/host/message.h"

enum { PHONE_ACCOUNT_COUNT = 4, PHONE_TEXT_SIZE = 128 };

// Registration state of a line.
enum LINE_STATE : unsigned int {
    LINE_DISABLED = 0,
    LINE_REGISTERING = 1,
    LINE_REGISTERED = 2,
    LINE_REGISTER_FAILED = 3,
    LINE_UNREGISTERED = 4,
    LINE_DEFAULT_ACCOUNT = 5, // registered, and the line that calls go out on
    LINE_INEXISTENCE = 6,
    LINE_UNREGISTERING = 7,
    LINE_EXIT = 8
};

// An account as the phone service reports it. Texts are UTF-8 with a terminator.
struct tagAccountInfo
{
    LINE_STATE eState = LINE_DISABLED;
    char szServer[PHONE_TEXT_SIZE] = {}; // registrar host
    char szUser[PHONE_TEXT_SIZE] = {};   // registered user; empty: the line has no account
    char szDisplayName[PHONE_TEXT_SIZE] = {};
    int nNewMessages = 0; // waiting in the voice mail box
    int nOldMessages = 0;
    char szWhyNot[PHONE_TEXT_SIZE] = {}; // what is wrong with it, an English key; empty: not known
};

// Non-zero on success; index 0 to PHONE_ACCOUNT_COUNT - 1. A failed call leaves the record as it was.
HX_HOST_API int phone_GetAccountInfoById(int index, tagAccountInfo* info);
HX_HOST_API int phone_GetDefaultAccount(tagAccountInfo* info);
// PHONE_PUBLIC_MSG_ACCOUNT_REFRESH goes to the processer when the account (-1: any) changes.
HX_HOST_API void phone_RegAccountNotify(chMsgProcesser* processer, int account);
HX_HOST_API void phone_UnRegAccountNotify(chMsgProcesser* processer, int account);

// account: 0 to 3, or -1 for the default one. Returns 1 when the call was begun.
HX_HOST_API int phone_CallNumber(const char* number, int account, int flags);
HX_HOST_API int phone_GetCallTotal();
HX_HOST_API int phone_IsPhoneInTalk();
HX_HOST_API int phone_GetPSTNEnable();

HX_HOST_API void phone_PlayDTMF(int key);
// file: device path of a ring tone; loop: non-zero repeats it until phone_StopRing.
HX_HOST_API int phone_PlayRing(const char* file, int loop);
HX_HOST_API void phone_StopRing(int flags);

// A claim on the speaker. The newest claim sets the volume (0 to 100).
struct voiceInfo
{
    voiceInfo(int type, int volume, int flag) : nType(type), nVolume(volume), nFlag(flag) {}
    int nType;   // 2: media playback
    int nVolume; // 0 to 100
    int nFlag;
};
// The record is not copied: it stays the caller's, and must live until it is removed.
HX_HOST_API void phone_SetVoiceInfo(voiceInfo* info);
HX_HOST_API void phone_RemoveVoiceInfo(voiceInfo* info);

// Output level 0 to 100 (clamped) and mute 0 or 1 of the audio device.
HX_HOST_API int dev_get_output_volume();
HX_HOST_API void dev_set_output_volume(int volume);
HX_HOST_API int dev_get_output_mute();
HX_HOST_API void dev_set_output_mute(int mute);
