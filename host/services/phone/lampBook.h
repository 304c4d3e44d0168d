#pragma once
// Who watches which extension, and what is known of it. What is watched outlives the backend: the next one is
// asked for the same. User-interface thread.
#include "host/services/phone/phoneLamps.h"
#include "support/host/api.h"
#include <functional>

class HX_HOST_API lampBook : public lampNews
{
public:
    enum { WATCHES_MAX = 256, MEMBERS_MAX = 256 };

    static lampBook& instance();

    // The lamps of the backend at work; null when it has none, or is going.
    void setLamps(phoneLamps* lamps);

    // Counted: what two watch ends with the second unwatch. Beyond WATCHES_MAX nothing is watched.
    void watch(const tagLampWatch& watch);
    void unwatch(const tagLampWatch& watch);
    void watchList(int line);
    void unwatchList(int line);
    // Asks the backend for all that is watched anew.
    void renew();

    // LAMP_UNKNOWN of what is not watched.
    LAMP_STATE state(const tagLampWatch& watch) const;
    QList<tagLampMember> list(int line) const;
    int pickUp(const tagLampWatch& watch);

    // Each is told of changes only. The answer is for removeListener.
    struct tagListener
    {
        std::function<void(const tagLampWatch& watch, LAMP_STATE state)> lamp;
        std::function<void(int line)> list;
    };
    int addListener(tagListener listener);
    void removeListener(int listener);

    void lampChanged(const tagLampWatch& watch, LAMP_STATE state) override;
    void listChanged(int line, const QList<tagLampMember>& members) override;

private:
    struct tagEntry
    {
        int nWatchers = 0;
        LAMP_STATE eState = LAMP_UNKNOWN;
    };
    struct tagList
    {
        int nWatchers = 0;
        QList<tagLampMember> members;
    };
    lampBook() = default;

    phoneLamps* m_pLamps = nullptr;
    QHash<tagLampWatch, tagEntry> m_watches;
    QHash<int, tagList> m_lists;
    QHash<int, tagListener> m_listeners;
    int m_nLastListener = 0;
};
