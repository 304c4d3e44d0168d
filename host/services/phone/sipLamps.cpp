#include "host/services/phone/sipLamps.h"
#include <algorithm>

namespace {

static_assert(int(SIP_LAMP_UNKNOWN) == int(LAMP_UNKNOWN) && int(SIP_LAMP_IDLE) == int(LAMP_IDLE) &&
                  int(SIP_LAMP_RINGING) == int(LAMP_RINGING) && int(SIP_LAMP_BUSY) == int(LAMP_BUSY),
              "the agent has the phone's lamps");

} // namespace

int sipLamps::lineOf(int line) const
{
    const int found = m_phone.lineOf(line);
    return found < SIP_LINE_COUNT ? found : -1;
}

const sipLamps::tagListed* sipLamps::memberOf(int line, const QString& number) const
{
    if (line < 0)
        return nullptr;
    for (const tagListed& listed : m_lists[line].members) {
        if (listed.member.strNumber == number)
            return &listed;
    }
    return nullptr;
}

// What is on a list is told with it, and not asked for by itself.
LAMP_STATE sipLamps::stateOf(const tagLampWatch& watch) const
{
    const tagListed* member = memberOf(lineOf(watch.nLine), watch.strNumber);
    return member ? member->eState : m_watches.value(watch).eState;
}

void sipLamps::release(tagWatched& watched)
{
    watched.eState = LAMP_UNKNOWN;
    if (watched.nId == 0)
        return;
    m_ids.remove(watched.nId);
    if (m_bAgent) {
        const auto record = sipWire::make<tagSipHead>(SIP_UNWATCH, watched.nId);
        m_phone.send(&record, sizeof record);
    }
    watched.nId = 0;
}

void sipLamps::place(const tagLampWatch& watch)
{
    tagWatched& watched = m_watches[watch];
    const int line = lineOf(watch.nLine);
    const bool isAsked = m_bAgent && line >= 0 && !memberOf(line, watch.strNumber);
    if (watched.nId != 0 && (!isAsked || watched.nLine != line))
        release(watched);
    const QByteArray number = watch.strNumber.toUtf8();
    if (!isAsked || watched.nId != 0 || m_ids.size() >= SIP_WATCHES_MAX || number.isEmpty() ||
        number.size() >= SIP_TARGET_SIZE)
        return;
    watched.nId = ++m_nLastId;
    watched.nLine = line;
    m_ids.insert(watched.nId, watch);
    auto record = sipWire::make<tagSipWatch>(SIP_WATCH, watched.nId);
    record.nLine = uint32_t(line);
    sipWire::setText(record.szNumber, number.toStdString());
    m_phone.send(&record, sizeof record);
}

// Who has been watched longest comes first.
void sipLamps::placeAll()
{
    QMap<uint32_t, tagLampWatch> inOrder;
    for (auto each = m_watches.cbegin(); each != m_watches.cend(); ++each)
        inOrder.insert(each->nOrder, each.key());
    // Those that need no watch any more make room first.
    for (const tagLampWatch& watch : std::as_const(inOrder)) {
        tagWatched& watched = m_watches[watch];
        const int line = lineOf(watch.nLine);
        if (watched.nId != 0 && (watched.nLine != line || memberOf(line, watch.strNumber)))
            release(watched);
    }
    for (const tagLampWatch& watch : std::as_const(inOrder))
        place(watch);
}

void sipLamps::placeList(int line)
{
    const bool isWanted =
        std::any_of(m_wanted.cbegin(), m_wanted.cend(), [&](int wanted) { return lineOf(wanted) == line; });
    QString address = m_bAgent && isWanted ? m_phone.listOf(line) : QString();
    if (address.toUtf8().size() >= SIP_TARGET_SIZE)
        address.clear();
    tagList& list = m_lists[line];
    if (address == list.strAddress)
        return;
    list = {};
    list.strAddress = address;
    auto record = sipWire::make<tagSipTarget>(SIP_WATCH_LIST, uint32_t(line));
    sipWire::setText(record.szTarget, address.toStdString());
    if (m_bAgent)
        m_phone.send(&record, sizeof record);
}

void sipLamps::refresh()
{
    for (int line = 0; line < SIP_LINE_COUNT; ++line)
        placeList(line);
    placeAll();
    const QSet<int> wanted = m_wanted; // who is told may watch others
    for (const int line : wanted)
        tellList(line);
    tellAll();
}

void sipLamps::agentIsThere()
{
    agentIsGone();
    m_bAgent = true;
    refresh();
}

void sipLamps::agentIsGone()
{
    m_bAgent = false;
    m_ids.clear();
    for (tagWatched& watched : m_watches) {
        watched.nId = 0;
        watched.eState = LAMP_UNKNOWN;
    }
    for (tagList& list : m_lists)
        list = {};
    refresh();
}

void sipLamps::setNews(lampNews* news)
{
    m_pNews = news;
    for (tagWatched& watched : m_watches)
        release(watched);
    m_watches.clear();
    m_wanted.clear();
    refresh();
}

void sipLamps::watch(const tagLampWatch& watch)
{
    tagWatched& watched = m_watches[watch];
    if (watched.nOrder == 0)
        watched.nOrder = ++m_nLastOrder;
    release(watched); // the agent asks for it anew
    place(watch);
    tell(watch);
}

void sipLamps::unwatch(const tagLampWatch& watch)
{
    const auto found = m_watches.find(watch);
    if (found == m_watches.end())
        return;
    release(*found);
    m_watches.erase(found);
    placeAll();
}

void sipLamps::watchList(int line)
{
    m_wanted.insert(line);
    const int server = lineOf(line);
    if (server >= 0) {
        m_lists[server].strAddress.clear(); // the agent asks for it anew
        placeList(server);
    }
    tellList(line);
}

void sipLamps::unwatchList(int line)
{
    m_wanted.remove(line);
    refresh();
}

int sipLamps::pickUp(const tagLampWatch& watch)
{
    return stateOf(watch) == LAMP_RINGING ? m_phone.takeCall(watch.strNumber, lineOf(watch.nLine)) : 0;
}

bool sipLamps::take(const sipWire::Reader& record)
{
    const tagSipHead& head = record.head();
    if (head.eKind == SIP_LAMP) {
        takeLamp(head.nId, LAMP_STATE(record.as<tagSipLamp>().eLamp));
    } else if (head.eKind == SIP_LIST) {
        tagList& list = m_lists[head.nId];
        list.coming.clear();
        list.nComing = int(record.as<tagSipList>().nMembers);
        if (list.nComing == 0)
            listCame(int(head.nId));
    } else if (head.eKind == SIP_MEMBER) {
        const auto& told = record.as<tagSipMember>();
        takeMember(
            int(head.nId), int(told.nIndex),
            {{QString::fromUtf8(told.szNumber), QString::fromUtf8(told.szName)}, LAMP_STATE(told.eLamp)});
    } else {
        return false;
    }
    return true;
}

void sipLamps::takeLamp(uint32_t id, LAMP_STATE state)
{
    const auto found = m_ids.constFind(id);
    if (found == m_ids.cend()) // it was not watched any more when this was said
        return;
    const tagLampWatch watch = *found;
    m_watches[watch].eState = state;
    tell(watch);
}

void sipLamps::takeMember(int line, int index, const tagListed& listed)
{
    tagList& list = m_lists[line];
    if (list.nComing > 0) {
        if (index != int(list.coming.size()))
            return;
        list.coming.append(listed);
        if (int(list.coming.size()) == list.nComing)
            listCame(line);
        return;
    }
    if (index >= list.members.size() || !(list.members[index].member == listed.member))
        return;
    list.members[index].eState = listed.eState;
    const QList<tagLampWatch> watches = m_watches.keys();
    for (const tagLampWatch& watch : watches) {
        if (watch.strNumber == listed.member.strNumber && lineOf(watch.nLine) == line)
            tell(watch);
    }
}

void sipLamps::listCame(int line)
{
    tagList& list = m_lists[line];
    list.members = list.coming;
    list.coming.clear();
    list.nComing = 0;
    placeAll();
    const QSet<int> wanted = m_wanted;
    for (const int each : wanted) {
        if (lineOf(each) == line)
            tellList(each);
    }
    tellAll();
}

void sipLamps::tell(const tagLampWatch& watch)
{
    if (m_pNews && m_watches.contains(watch))
        m_pNews->lampChanged(watch, stateOf(watch));
}

void sipLamps::tellAll()
{
    const QList<tagLampWatch> watches = m_watches.keys();
    for (const tagLampWatch& watch : watches)
        tell(watch);
}

void sipLamps::tellList(int line)
{
    if (!m_pNews || !m_wanted.contains(line))
        return;
    QList<tagLampMember> members;
    const int server = lineOf(line);
    if (server >= 0) {
        for (const tagListed& listed : std::as_const(m_lists[server].members))
            members.append(listed.member);
    }
    m_pNews->listChanged(line, members);
}
