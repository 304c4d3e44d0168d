#include "host/services/phone/callSettings.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include <algorithm>
#include <utility>

namespace {

const char* const kUserFile = "/rundata/config/user/user.ini";
const char* const kForwards[] = {"AlwaysForward", "BusyForward", "NoAnswerForward"};
constexpr int kLongestRing = 100;
constexpr int kLongestDelay = 10;
constexpr int kLongestAutoAnswer = 60; // a caller does not wait for ever

QByteArray lineFile(int line)
{
    return "/rundata/config/user/voip/sipAccount" + QByteArray::number(line) + ".cfg";
}

bool isLine(int line)
{
    return line >= 0 && line < PHONE_ACCOUNT_COUNT;
}

bool isOn(const char* file, const char* section, const char* key)
{
    return nuxGetRegistryInt(file, section, key, 0) != 0;
}

QString textOf(const char* file, const char* section, const char* key)
{
    return toQString(NUX_SubClass::nuxGetRegistryString(file, section, key, ""));
}

tagLineCalls readLine(int line)
{
    const QByteArray file = lineFile(line);
    const char* const account = "account";
    tagLineCalls calls;
    calls.bAnonymous = isOn(file, account, "AnonymousCall");
    calls.bRejectAnonymous = isOn(file, account, "RejectAnonymousCall");
    calls.strAnonymousOn = textOf(file, account, "AnonymousCall_OnCode");
    calls.strAnonymousOff = textOf(file, account, "AnonymousCall_OffCode");
    calls.strRejectOn = textOf(file, account, "AnonymousReject_OnCode");
    calls.strRejectOff = textOf(file, account, "AnonymousReject_OffCode");
    calls.eMode = nuxGetRegistryInt(file, "CallOption", "eCallMode", CALL_MODE_VIDEO);
    calls.options.bAnonymous = calls.bAnonymous;
    calls.options.bVideo = calls.eMode == CALL_MODE_VIDEO;
    calls.options.bCamera =
        calls.options.bVideo && nuxGetRegistryInt(file, "CallOption", "bActiveCamera", 1) != 0;
    calls.options.nBandwidth = std::max(0, nuxGetRegistryInt(file, "ADVANCED", "VideoBandwidth", 0));
    calls.options.nFrameRate = nuxGetRegistryInt(file, "hxMedia", "nFrameRate", tagCallOptions().nFrameRate);
    return calls;
}

} // namespace

callSettings::callSettings()
{
    m_noLine.eMode = CALL_MODE_VOICE;
    for (int line = 0; line < PHONE_ACCOUNT_COUNT; ++line)
        m_lines[line] = readLine(line);
    readWaiting();
    readSendKey();
}

tagForward callSettings::forward(FORWARD_WHEN when)
{
    const char* const section = kForwards[when];
    tagForward forward;
    if (!isOn(kUserFile, section, "bEnable"))
        return forward;
    forward.strTarget = textOf(kUserFile, section, "strTarget");
    const int seconds = nuxGetRegistryInt(kUserFile, section, "nTimeout", 0);
    forward.nSeconds = seconds >= 1 && seconds <= kLongestRing ? seconds : int(NO_ANSWER_SECONDS);
    return forward;
}

tagHotline callSettings::hotline()
{
    tagHotline hotline;
    hotline.strNumber = textOf(kUserFile, "Hotline", "strNumber");
    const QString delay = textOf(kUserFile, "Hotline", "nTimeDelay");
    hotline.nDelay = delay.isEmpty() ? int(HOTLINE_SECONDS) : std::clamp(delay.toInt(), 0, kLongestDelay);
    return hotline;
}

std::optional<int> callSettings::autoAnswer(int line)
{
    if (!isLine(line) || !isOn(lineFile(line), "AutoAnswer", "bEnable"))
        return std::nullopt;
    return std::clamp(nuxGetRegistryInt(lineFile(line), "AutoAnswer", "nTimeout", 0), 0, kLongestAutoAnswer);
}

bool callSettings::answersWhoAsks(int line)
{
    return isLine(line) && isOn(lineFile(line), "AutoAnswer", "bByCaller");
}

bool callSettings::readAgain(unsigned int changed)
{
    switch (changed) {
    case CONFIG_CHANGED_DIAL_PLAN:
        m_plan.forget();
        return true;
    case CONFIG_CHANGED_CALL_WAITING:
        readWaiting();
        return true;
    case CONFIG_CHANGED_KEY_AS_SEND:
        readSendKey();
        return true;
    default:
        return false;
    }
}

const tagLineCalls& callSettings::line(int line) const
{
    return isLine(line) ? m_lines[line] : m_noLine;
}

tagLineCalls callSettings::readLineAgain(int line)
{
    return isLine(line) ? std::exchange(m_lines[line], readLine(line)) : m_noLine;
}

void callSettings::readWaiting()
{
    m_bWaiting = isOn(kUserFile, "CallWaiting", "bEnable");
    m_bWaitingPstn = m_bWaiting && isOn(kUserFile, "CallWaiting", "bEffectPstn");
}

bool callSettings::isWaiting(int line) const
{
    return line == PHONE_LINE_PSTN ? m_bWaitingPstn : m_bWaiting;
}

void callSettings::readSendKey()
{
    enum { SEND_NOTHING, SEND_HASH, SEND_STAR };
    const int type = nuxGetRegistryInt(kUserFile, "KeyAsSend", "eType", SEND_NOTHING);
    m_sendKey = type == SEND_HASH ? QChar('#') : type == SEND_STAR ? QChar('*') : QChar();
}
