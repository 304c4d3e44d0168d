#pragma once
// The extensions that the servers of real lines tell of, through the SIP user agent. Beyond what the agent
// watches at once nothing is known of an extension until another one is not watched any more. User-interface
// thread.
#include "host/services/phone/phoneLamps.h"
#include "sip/sipWire.h"
#include <QMap>
#include <QSet>
#include <functional>

class sipLamps : public phoneLamps
{
public:
    struct tagPhone
    {
        std::function<void(const void* record, size_t size)> send; // to the agent, which is there
        std::function<int(int line)> lineOf;                       // the default one for -1; -1: none
        std::function<QString(int line)> listOf; // address of the list of a line, 0 to 3; empty: it has none
        // Begins the call from the line that takes the one which rings at the number (SIP_PICK_UP); its id.
        std::function<int(const QString& number, int line)> takeCall;
    };
    explicit sipLamps(tagPhone phone) : m_phone(std::move(phone)) {}

    // An agent is there, and is told what is watched.
    void agentIsThere();
    void agentIsGone();
    // Accounts, or the default line, may be others.
    void refresh();
    // A record of the agent; false: it is about no lamp. One that does not fit is left.
    bool take(const sipWire::Reader& record);

    void setNews(lampNews* news) override;
    void watch(const tagLampWatch& watch) override;
    void unwatch(const tagLampWatch& watch) override;
    void watchList(int line) override;
    void unwatchList(int line) override;
    int pickUp(const tagLampWatch& watch) override;

private:
    struct tagWatched
    {
        uint32_t nOrder = 0;
        uint32_t nId = 0; // of the agent's watch; 0: it has none
        int nLine = -1;   // of that
        LAMP_STATE eState = LAMP_UNKNOWN;
    };
    struct tagListed
    {
        tagLampMember member;
        LAMP_STATE eState = LAMP_UNKNOWN;
    };
    struct tagList
    {
        QString strAddress; // that the agent was told; empty: none
        int nComing = 0;    // of the agent's list
        QList<tagListed> coming;
        QList<tagListed> members;
    };

    int lineOf(int line) const;
    const tagListed* memberOf(int line, const QString& number) const;
    LAMP_STATE stateOf(const tagLampWatch& watch) const;
    void place(const tagLampWatch& watch);
    void placeAll();
    void release(tagWatched& watched);
    void placeList(int line);
    void takeLamp(uint32_t id, LAMP_STATE state);
    void takeMember(int line, int index, const tagListed& listed);
    void listCame(int line);
    void tell(const tagLampWatch& watch);
    void tellAll();
    void tellList(int line);

    tagPhone m_phone;
    lampNews* m_pNews = nullptr;
    bool m_bAgent = false;
    uint32_t m_nLastOrder = 0;
    uint32_t m_nLastId = 0;
    QHash<tagLampWatch, tagWatched> m_watches;
    QHash<uint32_t, tagLampWatch> m_ids;
    QSet<int> m_wanted; // lists, as the phone names their lines
    tagList m_lists[SIP_LINE_COUNT];
};
