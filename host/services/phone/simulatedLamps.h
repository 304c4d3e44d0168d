#pragma once
// The extensions of the simulated phone's server: every number is one, and idle unless it was set otherwise.
// Nothing is known of them while the line is not registered. User-interface thread.
#include "host/services/phone/phoneLamps.h"
#include <QSet>
#include <functional>

class simulatedLamps : public phoneLamps
{
public:
    struct tagServer
    {
        std::function<bool(int line)> isRegistered; // -1: any
        std::function<int(int line)> lineOf;        // the default one for -1
        // Takes a call of that number on the line; its id.
        std::function<int(const QString& number, int line)> takeCall;
    };
    explicit simulatedLamps(tagServer server) : m_server(std::move(server)) {}

    void set(const QString& number, LAMP_STATE state);
    // As the server of a line would have it; without a call it is "BLFList" of the line's file: numbers, each
    // with
    // "=NAME" where it has one, and commas between them.
    void setList(int line, const QString& members);
    // Whether lines are registered may have changed.
    void refresh();

    LAMP_STATE stateOf(const tagLampWatch& watch) const;
    bool isWatched(const QString& number) const;

    void setNews(lampNews* news) override;
    void watch(const tagLampWatch& watch) override;
    void unwatch(const tagLampWatch& watch) override { m_watches.remove(watch); }
    void watchList(int line) override;
    void unwatchList(int line) override { m_lists.remove(line); }
    int pickUp(const tagLampWatch& watch) override;

private:
    QList<tagLampMember> membersOf(int line) const;
    void tell(const tagLampWatch& watch);
    void tellList(int line);

    tagServer m_server;
    lampNews* m_pNews = nullptr;
    QHash<QString, LAMP_STATE> m_states;
    QHash<int, QString> m_byHand; // lists
    QSet<tagLampWatch> m_watches;
    QSet<int> m_lists;
};
