#pragma once
// Calls between a backend that does what it is told, and writes it down, and somebody who hears of them.
#include "host/services/phone/callRules.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"
#include <utility>

namespace kit {

class OrderedBackend : public phoneBackend
{
public:
    void start(phoneEvents* events) override { m_pEvents = events; }
    tagAccountInfo account(int index) const override { return accounts[index]; }
    int defaultAccount() const override { return nDefault; }
    int dial(const QString& number, int account, const tagCallOptions& options) override
    {
        orders.append(QString("dial %1 on %2").arg(number).arg(account));
        if (!bDials)
            return 0;
        tagCall call;
        call.strNumber = number;
        call.nAccount = account;
        call.options = options;
        return begin(call);
    }
    bool ring(int id) override
    {
        return changed("ring", id, [](tagCall&) {});
    }
    bool answer(int id, const tagCallOptions& options) override
    {
        return changed("answer", id, [&](tagCall& call) {
            call.options = options;
            call.eState = CALL_TALKING;
        });
    }
    bool refuse(int id, CALL_END why) override { return ended(QString("refuse %1").arg(why), id, why); }
    bool deflect(int id, const QString& number) override
    {
        return ended("deflect " + number, id, CALL_FORWARDED);
    }
    bool hangUp(int id) override { return ended("hang up", id, CALL_HUNG_UP); }
    bool setHeld(int id, bool held) override
    {
        if (!held && !bResumes)
            return false;
        return changed(held ? "hold" : "resume", id, [&](tagCall& call) { call.bHeld = held; });
    }
    bool setMuted(int id, bool muted) override
    {
        return changed(muted ? "mute" : "unmute", id, [&](tagCall& call) { call.bMuted = muted; });
    }
    bool setCamera(int id, bool on) override
    {
        return changed(on ? "camera" : "no camera", id, [&](tagCall& call) { call.options.bCamera = on; });
    }
    bool transfer(int id, const QString& number) override
    {
        return ended("transfer " + number, id, CALL_TRANSFERRED);
    }
    bool connect(int id, int other) override
    {
        if (!bConnects)
            return false;
        note(QString("connect with %1").arg(other), id);
        return ended("", id, CALL_TRANSFERRED) && ended("", other, CALL_TRANSFERRED);
    }
    bool join(int id, int other) override
    {
        tagCall* call = find(id);
        tagCall* second = find(other);
        if (!bConnects || !call || !second)
            return false;
        call->nJoined = other;
        second->nJoined = id;
        return changed(QString("join %1").arg(other), id, [](tagCall&) {}) &&
               changed("", other, [](tagCall&) {});
    }
    bool split(int id) override
    {
        const int other = partBoth(id);
        return other && changed("split", id, [](tagCall&) {}) && changed("", other, [](tagCall&) {});
    }
    bool sendTone(int id, QChar tone, bool secret) override
    {
        return changed(QString(secret ? "secret tone %1" : "tone %1").arg(tone), id, [](tagCall&) {});
    }
    QList<tagCall> calls() const override { return live; }
    int callTotal() const override { return int(live.size()); }
    bool isInTalk() const override { return false; }
    bool hasPstn() const override { return bPstn; }

    // What the outside does.
    int arrive(tagCall call)
    {
        call.nId = callNewId();
        call.bIncoming = true;
        live.append(call);
        m_pEvents->callArrived(call);
        return call.nId;
    }
    void answerFromOutside(int id)
    {
        changed("", id, [](tagCall& call) { call.eState = CALL_TALKING; });
    }
    void hasSound(int id)
    {
        changed("", id, [](tagCall& call) { call.streams.strSound = "Opus"; });
    }
    void endFromOutside(int id, CALL_END why) { ended("", id, why); }

    QList<tagCall> live;
    QStringList orders;
    tagAccountInfo accounts[PHONE_ACCOUNT_COUNT];
    int nDefault = 0;
    bool bPstn = false;
    bool bDials = true;
    bool bConnects = true; // and joins
    bool bResumes = true;

private:
    int begin(tagCall call)
    {
        call.nId = callNewId();
        live.append(call);
        m_pEvents->callChanged(call);
        return call.nId;
    }
    tagCall* find(int id)
    {
        for (tagCall& call : live) {
            if (call.nId == id)
                return &call;
        }
        return nullptr;
    }
    void note(const QString& order, int id)
    {
        if (!order.isEmpty())
            orders.append(order + " #" + QString::number(id));
    }
    template <typename Change>
    bool changed(const QString& order, int id, Change change)
    {
        tagCall* call = find(id);
        if (!call)
            return false;
        note(order, id);
        change(*call);
        m_pEvents->callChanged(tagCall(*call));
        return true;
    }
    bool ended(const QString& order, int id, CALL_END why)
    {
        const tagCall* call = find(id);
        if (!call)
            return false;
        note(order, id);
        const int other = partBoth(id);
        tagCall last = *call;
        live.removeIf([id](const tagCall& other) { return other.nId == id; });
        last.eState = CALL_ENDED;
        last.eEnd = why;
        m_pEvents->callChanged(last);
        return !other || changed("", other, [](tagCall&) {});
    }
    // The other one.
    int partBoth(int id)
    {
        tagCall* call = find(id);
        const int other = call ? std::exchange(call->nJoined, 0) : 0;
        if (other)
            find(other)->nJoined = 0;
        return other;
    }

    phoneEvents* m_pEvents = nullptr;
};

class HeardNews : public phoneNews
{
public:
    void accountChanged(int index) override { accounts.append(index); }
    void callChanged(const tagCall& call) override { calls.append(call); }

    QList<int> accounts;
    QList<tagCall> calls;
};

} // namespace kit

class RuledCalls : public PhoneTest
{
protected:
    RuledCalls() { start(); }

    // As at a boot: what is kept is read.
    void start()
    {
        rules = nullptr;
        backend = kit::OrderedBackend();
        rules = std::make_unique<callRules>(backend, news);
        backend.start(rules.get());
    }
    static void setUser(const char* section, const char* key, const QString& value)
    {
        ASSERT_EQ(nuxSetRegistryString("/rundata/config/user/user.ini", section, key, value.toUtf8()), 1);
    }
    static void setLine(int line, const char* section, const char* key, const QString& value)
    {
        const QByteArray file = "/rundata/config/user/voip/sipAccount" + QByteArray::number(line) + ".cfg";
        ASSERT_EQ(nuxSetRegistryString(file, section, key, value.toUtf8()), 1);
    }
    static void setForward(const char* section, const QString& target)
    {
        setUser(section, "bEnable", "1");
        setUser(section, "strTarget", target);
    }
    static void tellChanged(unsigned int what, unsigned int which = 0)
    {
        msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, what, which);
        kit::settle();
    }
    void setAccount(int line, const char* user, const char* server)
    {
        qstrncpy(backend.accounts[line].szUser, user, PHONE_TEXT_SIZE);
        qstrncpy(backend.accounts[line].szServer, server, PHONE_TEXT_SIZE);
    }
    int arrive(const QString& number = "4711", int line = 0, bool anonymous = false)
    {
        tagCall call;
        call.strNumber = number;
        call.nAccount = line;
        call.bAnonymous = anonymous;
        return backend.arrive(call);
    }
    // One that talks already.
    int talk(int line = 0)
    {
        const int id = arrive("1", line);
        EXPECT_TRUE(rules->answer(id));
        backend.orders.clear();
        return id;
    }
    // The orders since the last look, with the call's number in the place of "#".
    QStringList orders() { return std::exchange(backend.orders, {}); }
    static QString of(const QString& order, int id) { return order + " #" + QString::number(id); }

    kit::OrderedBackend backend;
    kit::HeardNews news;
    std::unique_ptr<callRules> rules;
};
