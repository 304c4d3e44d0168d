#pragma once
// Who the signage server is, and who this display is to it. User-interface thread.
#include "support/text/chString.h"

struct _ServerCfg
{
    chString strUrl; // without a slash at its end
    chString strName;
    chString strKey;
    chString strPassword;
    chString strClientKey;
    chString strVersion;
    chString strClientType;
    chString strLanguage;
};

// Found out once, kept for the life of the process.
chString& GetClientKey();
chString& GetClientType();
chString& GetLanguageCode();

// Fills config from what is configured now.
void readServerConfig(_ServerCfg& config);
// What every request carries behind its server key: hardware key, client type, version, language.
chString serverClientQuery(const _ServerCfg& config);

// A number and a text of the configuration's signage section.
int nDeckSettingInt(const char* key, int def);
chString nDeckSettingString(const char* key, const char* def);
// A switch is on at the value 1 only.
bool nDeckIsOn(const char* key, int def);
bool nDeckIsEnabled();
bool nDeckPlaysVideoInTalk();
// A show that runs goes on through starts, outages and changes of the schedule.
bool nDeckKeepsShow();
// Milliseconds between two looks at the schedule.
int nDeckUpdateInterval();

// Whether the text reaches the server as it is: values stand in an address without any escaping, so one with
// "&", "#" or an escape of its own ("%41") would arrive as another.
bool serverTakesValue(const char* text);
// The same of all that is configured; what does not fit is traced by the name of its key.
bool serverTakesConfig(const _ServerCfg& config);
