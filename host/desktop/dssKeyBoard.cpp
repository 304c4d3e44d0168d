#include "host/desktop/dssKeyBoard.h"
#include "host/desktop/lineName.h"
#include "host/desktop/lineSeizure.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/lampBook.h"
#include "host/services/phone/phoneService.h"
#include "support/host/language.h"
#include "support/host/managers.h"
#include "support/host/module.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/ui.h"

namespace {

const char* const kFile = "/rundata/data/dsskey.xml";
const char* const kUserFile = "/rundata/config/user/user.ini";
constexpr int kTone = 'D';        // as of a call that waits
constexpr int kLongestLabel = 32; // what two lines hold

bool isRegistered(LINE_STATE state)
{
    return state == LINE_REGISTERED || state == LINE_DEFAULT_ACCOUNT;
}

// A name from a file or a server, of any length and kind.
QString oneLine(const QString& text)
{
    const QString line = callTextOf(text).simplified();
    return line.size() > kLongestLabel ? line.left(kLongestLabel - 1) + QStringLiteral("…") : line;
}

QString firstOf(std::initializer_list<QString> texts)
{
    for (const QString& text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return QString();
}

} // namespace

DssKeyBoard& DssKeyBoard::instance()
{
    static DssKeyBoard* board = new DssKeyBoard; // keys are pressed until the end
    return *board;
}

DssKeyBoard::DssKeyBoard()
{
    dssKeysListen([this] { takeKeys(); });
    lampBook::instance().addListener(
        {[this](const tagLampWatch& watch, LAMP_STATE state) { onLamp(watch, state); },
         [this](int) { takeWatches(); }});
    phoneService::instance().addCallListener([this](const tagCall&) { refresh(); });
    phone_RegAccountNotify(this, -1);
    GetDssKeyManager()->LoadFile(kFile, 0);
    takeKeys();
}

int DssKeyBoard::TryThreadMessage(msgObject& msg)
{
    if (msg.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH)
        refresh();
    if (msg.message != CONFIG_MSG_BCAST_CHANGED)
        return 0;
    if (msg.wParam == CONFIG_CHANGED_DSS_KEY)
        GetDssKeyManager()->LoadFile(kFile, 0);
    else if (msg.wParam == CONFIG_CHANGED_DSS_KEY_FIRST)
        lampBook::instance().renew();
    // Others want it too.
    return 0;
}

tagDssKey DssKeyBoard::key(int index) const
{
    return m_slots.value(index).key;
}

tagDssKeyLook DssKeyBoard::look(int index) const
{
    return m_slots.value(index).look;
}

QString DssKeyBoard::numberOf(int index) const
{
    const tagSlot slot = m_slots.value(index);
    return slot.key.eType == tagDssKey::BLF_LIST ? slot.watch.strNumber : slot.key.strNumber;
}

void DssKeyBoard::takeKeys()
{
    const QList<tagDssKey>& keys = dssKeys();
    m_slots.resize(DSS_KEYS_MAX);
    for (int index = 0; index < DSS_KEYS_MAX; ++index)
        m_slots[index].key = keys.value(index);
    takeWatches();
}

// The nth key that takes from a line's list has its nth extension.
void DssKeyBoard::nameMembers()
{
    QHash<int, int> taken;
    for (tagSlot& slot : m_slots) {
        if (slot.key.eType != tagDssKey::BLF_LIST)
            continue;
        const QList<tagLampMember> members = lampBook::instance().list(slot.key.nLine);
        const tagLampMember member = members.value(taken[slot.key.nLine]++);
        slot.key.strLabel = member.strName;
        slot.key.strWatched = member.strNumber;
    }
}

// What is watched on goes on being watched: nothing is unknown in between.
void DssKeyBoard::takeWatches()
{
    lampBook& book = lampBook::instance();
    QSet<int> lists;
    for (const tagSlot& slot : std::as_const(m_slots)) {
        if (slot.key.eType == tagDssKey::BLF_LIST)
            lists.insert(slot.key.nLine);
    }
    const QSet<int> newLists = lists - m_lists;
    const QSet<int> oldLists = m_lists - lists;
    m_lists = lists;
    for (const int line : newLists)
        book.watchList(line);
    for (const int line : oldLists)
        book.unwatchList(line);
    nameMembers();

    QSet<tagLampWatch> watches;
    for (tagSlot& slot : m_slots) {
        slot.watch = {slot.key.nLine, callNumberOf(slot.key.strWatched)};
        if (!slot.watch.strNumber.isEmpty())
            watches.insert(slot.watch);
    }
    const QSet<tagLampWatch> newWatches = watches - m_watches;
    const QSet<tagLampWatch> oldWatches = m_watches - watches;
    m_watches = watches;
    for (const tagLampWatch& watch : newWatches)
        book.watch(watch);
    for (const tagLampWatch& watch : oldWatches)
        book.unwatch(watch);
    refresh();
}

void DssKeyBoard::refresh()
{
    for (int index = 0; index < m_slots.size(); ++index) {
        const tagDssKeyLook now = lookOf(m_slots[index]);
        if (now == m_slots[index].look)
            continue;
        m_slots[index].look = now;
        emit changed(index);
    }
}

void DssKeyBoard::onLamp(const tagLampWatch& watch, LAMP_STATE state)
{
    for (int index = 0; index < m_slots.size(); ++index) {
        tagDssKeyLook& look = m_slots[index].look;
        if (!(m_slots[index].watch == watch) || look.eLamp == state)
            continue;
        look.eLamp = state;
        emit changed(index);
    }
    if (state == LAMP_RINGING)
        playTone();
}

// Twenty extensions that ring at once are one tone. Who calls, or does not want to be disturbed, hears none.
void DssKeyBoard::playTone()
{
    const bool isPaused = m_tone.isValid() && m_tone.elapsed() < TONE_PAUSE_MS;
    if (isPaused || phone_GetCallTotal() > 0 || doNotDisturb::isOn() ||
        !nuxGetRegistryInt(kUserFile, "DssKey", "bTone", 0))
        return;
    m_tone.start();
    phone_PlayDTMF(kTone);
}

tagDssKeyLook DssKeyBoard::lookOf(const tagSlot& slot) const
{
    const tagDssKey& key = slot.key;
    tagDssKeyLook look;
    look.eType = key.eType;
    switch (key.eType) {
    case tagDssKey::FREE:
        break;
    case tagDssKey::LINE:
        look.strLabel = lineName(key.nLine);
        look.bLamp = true;
        look.eLamp = lineLamp(key.nLine);
        break;
    case tagDssKey::SPEED_DIAL:
        look.strLabel = oneLine(firstOf({key.strLabel, key.strNumber, qTranslate("Speed Dial")}));
        break;
    case tagDssKey::BLF:
        look.strLabel = oneLine(firstOf({key.strLabel, key.strNumber, qTranslate("BLF")}));
        look.bLamp = true;
        break;
    case tagDssKey::BLF_LIST:
        look.strLabel = oneLine(firstOf({key.strLabel, key.strWatched, qTranslate("BLF List")}));
        look.bLamp = !slot.watch.strNumber.isEmpty();
        break;
    }
    if (look.bLamp && key.eType != tagDssKey::LINE)
        look.eLamp = lampBook::instance().state(slot.watch);
    return look;
}

LAMP_STATE DssKeyBoard::lineLamp(int line) const
{
    tagAccountInfo info;
    const int known = line < 0 ? phone_GetDefaultAccount(&info) : phone_GetAccountInfoById(line, &info);
    if (!known || !isRegistered(info.eState))
        return LAMP_UNKNOWN;
    const int account = line < 0 ? phoneService::instance().backend().defaultAccount() : line;
    LAMP_STATE state = LAMP_IDLE;
    for (const tagCall& call : phoneService::instance().calls()) {
        if (call.nAccount != account)
            continue;
        if (call.bIncoming && call.eState == CALL_RINGING)
            return LAMP_RINGING;
        state = LAMP_BUSY;
    }
    return state;
}

void DssKeyBoard::press(int index)
{
    if (index < 0 || index >= m_slots.size())
        return;
    const tagSlot slot = m_slots[index];
    switch (slot.key.eType) {
    case tagDssKey::LINE:
        return lineSeize(slot.key.nLine);
    case tagDssKey::BLF_LIST:
        // One that the list does not reach is nobody's.
        if (slot.watch.strNumber.isEmpty())
            return;
        break;
    case tagDssKey::SPEED_DIAL:
    case tagDssKey::BLF:
        if (!slot.key.strNumber.isEmpty())
            break;
        [[fallthrough]];
    case tagDssKey::FREE:
        return edit(index);
    }
    callOn(slot);
}

// Where no more calls can be, the phone says so as for any call.
void DssKeyBoard::callOn(const tagSlot& slot)
{
    lampBook& book = lampBook::instance();
    const bool rings = slot.look.bLamp && book.state(slot.watch) == LAMP_RINGING;
    const bool hasRoom = phoneService::instance().calls().size() < callRules::CALLS_MAX;
    if (rings && hasRoom && book.pickUp(slot.watch))
        return;
    const bool isMember = slot.key.eType == tagDssKey::BLF_LIST;
    phone_CallNumber(fromQString(isMember ? slot.watch.strNumber : slot.key.strNumber), slot.key.nLine, 0);
}

void DssKeyBoard::edit(int index)
{
    if (hostModule().editDssKey && index >= 0 && index < DSS_KEYS_MAX)
        hostModule().editDssKey(index);
}
