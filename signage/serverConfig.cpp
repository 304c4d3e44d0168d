#include "signage/serverConfig.h"
#include "support/file/chFileStdio.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cctype>
#include <cstring>
#include <utility>

namespace {

constexpr const char* kSystem = "/rundata/config/system.ini";
constexpr const char* kUser = "/rundata/config/user/user.ini";
constexpr const char* kCodes = "/phone/resource/LanguageCode.ini";
constexpr int kUpdateIntervalMs = 60000;
constexpr int kShortestIntervalMs = 100;
constexpr int kSizeText = 16; // bytes of the memory's size that are looked at

bool isHexDigit(char letter)
{
    return isxdigit(static_cast<unsigned char>(letter)) != 0;
}

chString withoutSlashes(const chString& url)
{
    int length = url.GetLength();
    while (length > 0 && url.GetText()[length - 1] == '/')
        --length;
    return chString(url, length);
}

// The larger board is told by what it does not say.
const char* clientTypeOfBoard()
{
    char size[kSizeText + 1] = {};
    chFileStdio file("/proc/ddrsize", "rb");
    file.Read(size, kSizeText);
    return memmem(size, kSizeText, "128M", strlen("128M")) ? "hx7206" : "hx7206p";
}

chString languageCode()
{
    using NUX_SubClass::nuxGetRegistryString;
    const chString language = nuxGetRegistryString(kUser, "Language", "strGUILanguage", "English");
    const chString code = nuxGetRegistryString(kCodes, "Code", language, "en");
    return code.IsEmpty() ? chString("en") : code;
}

} // namespace

int nDeckSettingInt(const char* key, int def)
{
    return nuxGetRegistryInt(kSystem, "nDeck", key, def);
}

chString nDeckSettingString(const char* key, const char* def)
{
    return NUX_SubClass::nuxGetRegistryString(kSystem, "nDeck", key, def);
}

bool nDeckIsOn(const char* key, int def)
{
    return nDeckSettingInt(key, def) == 1;
}

bool nDeckIsEnabled()
{
    return nDeckIsOn("bEnable", 0);
}

bool nDeckPlaysVideoInTalk()
{
    return nDeckIsOn("bPlayVideoInTalk", 0);
}

bool nDeckKeepsShow()
{
    return nDeckIsOn("bKeepShow", 0);
}

int nDeckUpdateInterval()
{
    const int interval = nDeckSettingInt("nUpdateInteval", kUpdateIntervalMs);
    return interval > 0 ? std::max(interval, kShortestIntervalMs) : kUpdateIntervalMs;
}

bool serverTakesValue(const char* text)
{
    for (; *text; ++text) {
        const bool isEscape = *text == '%' && isHexDigit(text[1]) && isHexDigit(text[2]);
        if (*text == '&' || *text == '#' || isEscape)
            return false;
    }
    return true;
}

bool serverTakesConfig(const _ServerCfg& config)
{
    bool takesAll = true;
    // The path that is asked for stands behind it.
    if (strpbrk(config.strUrl, "?#")) {
        nuxTrace(TRACE_NOTE, "the value of strServerURL cannot be used: it holds \"?\" or \"#\"");
        takesAll = false;
    }
    const std::pair<const char*, const chString*> values[] = {{"strServerKey", &config.strKey},
                                                              {"strServerPwd", &config.strPassword},
                                                              {"strDisplayName", &config.strName}};
    for (const auto& [key, value] : values) {
        if (serverTakesValue(*value))
            continue;
        nuxTrace(TRACE_NOTE, "the value of %s cannot be sent: it holds \"&\", \"#\" or an escape", key);
        takesAll = false;
    }
    return takesAll;
}

chString& GetClientKey()
{
    static chString key;
    if (key.IsEmpty())
        key = netGetMACText(0);
    return key;
}

chString& GetClientType()
{
    static chString type;
    if (type.IsEmpty())
        type = clientTypeOfBoard();
    return type;
}

chString& GetLanguageCode()
{
    static chString code;
    if (code.IsEmpty())
        code = languageCode();
    return code;
}

void readServerConfig(_ServerCfg& config)
{
    config.strUrl = withoutSlashes(nDeckSettingString("strServerURL", ""));
    config.strKey = nDeckSettingString("strServerKey", "");
    config.strPassword = nDeckSettingString("strServerPwd", "");
    config.strName = nDeckSettingString("strDisplayName", "");
    config.strClientKey = GetClientKey();
    config.strVersion = "2.0";
    config.strLanguage = GetLanguageCode();
    config.strClientType = GetClientType();
}

chString serverClientQuery(const _ServerCfg& config)
{
    return "&hardwareKey=" + config.strClientKey + "&clientType=" + config.strClientType +
           "&version=" + config.strVersion + "&language=" + config.strLanguage;
}
