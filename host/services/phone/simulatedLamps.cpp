#include "host/services/phone/simulatedLamps.h"
#include "support/host/registry.h"
#include "support/host/text.h"

void simulatedLamps::setNews(lampNews* news)
{
    m_pNews = news;
    m_watches.clear();
    m_lists.clear();
}

LAMP_STATE simulatedLamps::stateOf(const tagLampWatch& watch) const
{
    return m_server.isRegistered(watch.nLine) ? m_states.value(watch.strNumber, LAMP_IDLE) : LAMP_UNKNOWN;
}

bool simulatedLamps::isWatched(const QString& number) const
{
    for (const tagLampWatch& watch : m_watches) {
        if (watch.strNumber == number)
            return true;
    }
    return false;
}

void simulatedLamps::tell(const tagLampWatch& watch)
{
    if (m_pNews)
        m_pNews->lampChanged(watch, stateOf(watch));
}

void simulatedLamps::tellList(int line)
{
    if (m_pNews)
        m_pNews->listChanged(line, m_server.isRegistered(line) ? membersOf(line) : QList<tagLampMember>());
}

void simulatedLamps::set(const QString& number, LAMP_STATE state)
{
    if (state == LAMP_IDLE)
        m_states.remove(number);
    else
        m_states.insert(number, state);
    const QSet<tagLampWatch> watches = m_watches; // who is told may watch others
    for (const tagLampWatch& watch : watches) {
        if (watch.strNumber == number)
            tell(watch);
    }
}

void simulatedLamps::refresh()
{
    const QSet<int> lists = m_lists;
    for (const int line : lists)
        tellList(line);
    const QSet<tagLampWatch> watches = m_watches;
    for (const tagLampWatch& watch : watches)
        tell(watch);
}

void simulatedLamps::watch(const tagLampWatch& watch)
{
    m_watches.insert(watch);
    tell(watch);
}

void simulatedLamps::watchList(int line)
{
    m_lists.insert(line);
    tellList(line);
}

void simulatedLamps::setList(int line, const QString& members)
{
    m_byHand.insert(line, members);
    refresh();
}

QList<tagLampMember> simulatedLamps::membersOf(int line) const
{
    const int account = m_server.lineOf(line);
    const QByteArray file = "/rundata/config/user/voip/sipAccount" + QByteArray::number(account) + ".cfg";
    const QString text = m_byHand.contains(account)
                             ? m_byHand.value(account)
                             : toQString(NUX_SubClass::nuxGetRegistryString(file, "account", "BLFList", ""));
    QList<tagLampMember> members;
    for (const QString& part : text.split(',', Qt::SkipEmptyParts))
        members.append({part.section('=', 0, 0).trimmed(), part.section('=', 1).trimmed()});
    return members;
}

int simulatedLamps::pickUp(const tagLampWatch& watch)
{
    if (stateOf(watch) != LAMP_RINGING)
        return 0;
    const int call = m_server.takeCall(watch.strNumber, m_server.lineOf(watch.nLine));
    set(watch.strNumber, LAMP_IDLE);
    return call;
}
