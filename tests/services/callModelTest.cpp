// Thousands of calls in and out, with every setting and every act drawn at random, beside a model of the
// rules.
//   HX_CALLS_SEED   of the run to repeat
#include "tests/services/callModel.h"
#include "host/services/system/hostLog.h"
#include "tests/services/ruledCalls.h"
#include <QDir>
#include <malloc.h>
#include <random>

namespace {

constexpr int kCalls = 500;
constexpr int kLongCalls = 5000;
constexpr int kActsAtMost = 6;    // with what is there, between two calls
constexpr int kLogEntries = 2000; // that are kept
constexpr int kGrowthKiB = 64;
const char* const kPlan = "/rundata/data/dialplan.xml";
const char* const kNumbers[] = {
    "4711", "4712",          "0049 30-1",           "001",  "0",    "1001", "sip:1002@pbx.test", "555",
    "666",  "anna@pbx.test", "1003@elsewhere.test", "6\"6", "../1", " ",    "+49(30)12"};
const char* const kTargets[] = {"555",  "666", "", "1001", "1002@pbx.test", "1002@elsewhere.test",
                                "4711", "5'5"};
const char* const kCodes[] = {"", "*67", "*68#", "*6\"9"};
const char* const kTones[] = {"1", "12*#", "D", "1a", ""};

class ModelledCalls : public RuledCalls
{
protected:
    ModelledCalls()
        : m_nSeed(qEnvironmentVariableIsSet("HX_CALLS_SEED") ? qgetenv("HX_CALLS_SEED").toUInt()
                                                             : std::random_device()()),
          m_random(m_nSeed)
    {
        printf("HX_CALLS_SEED=%u\n", m_nSeed);
        for (int line = 0; line < 3; ++line) {
            setAccount(line, QByteArray("100").append(char('1' + line)).constData(), "pbx.test");
            m_model.set.lines[line].strOwn = QString("100%1@pbx.test").arg(line + 1);
        }
        // Whatever the factory has set is drawn first of all.
        for (int line = 0; line < 4; ++line)
            tellLine(line);
        setWaiting();
        setForward("AlwaysForward", m_model.set.always);
        setForward("BusyForward", m_model.set.busy);
        setForward("NoAnswerForward", m_model.set.noAnswer);
    }

    int draw(int below) { return int(m_random() % unsigned(below)); }
    bool chance(int percent) { return draw(100) < percent; }
    template <int N>
    QString oneOf(const char* const (&all)[N])
    {
        return QString::fromUtf8(all[draw(N)]);
    }
    // Of a call that is there, and now and then of none.
    int drawCall()
    {
        const QList<tagCall> live = backend.live;
        return live.isEmpty() || chance(5) ? 1 << 20 : live[draw(int(live.size()))].nId;
    }

    void setForward(const char* section, kit::CallModel::tagForward& forward)
    {
        forward.bOn = chance(30);
        forward.strTarget = oneOf(kTargets);
        const int seconds[] = {0, 1, 5, 20, 100, 101};
        forward.nSeconds = seconds[draw(6)];
        setUser(section, "bEnable", forward.bOn ? "1" : "0");
        setUser(section, "strTarget", forward.strTarget);
        setUser(section, "nTimeout", QString::number(forward.nSeconds));
    }
    void setWaiting()
    {
        m_model.set.bWaiting = chance(75);
        m_model.set.bWaitingPstn = chance(50);
        setUser("CallWaiting", "bEnable", m_model.set.bWaiting ? "1" : "0");
        setUser("CallWaiting", "bEffectPstn", m_model.set.bWaitingPstn ? "1" : "0");
        if (chance(20))
            return;
        m_model.tellWaiting();
        tellChanged(CONFIG_CHANGED_CALL_WAITING);
    }
    void setDisturb()
    {
        m_model.set.bDisturb = chance(20);
        m_model.set.bDisturbPstn = chance(50);
        setUser("DND", "bEnable", m_model.set.bDisturb ? "1" : "0");
        setUser("DND", "bEffectPstn", m_model.set.bDisturbPstn ? "1" : "0");
    }
    void setPlan()
    {
        QByteArray rules;
        m_model.set.plan.clear();
        const char* const prefixes[] = {"0", "00", "0049", "1", "47"};
        const char* const replacements[] = {"9", "", "+49", "\"", "0"};
        for (int rule = draw(5); rule > 0; --rule) {
            const QByteArray prefix = oneOf(prefixes).toUtf8();
            const QByteArray replacement = oneOf(replacements).toUtf8();
            m_model.set.plan.append({prefix, replacement});
            rules += "<Data Prefix='" + prefix + "' Replace='" + replacement + "'/>";
        }
        writeFile(kPlan, "<DialRule>" + rules + "</DialRule>");
        m_model.tellPlan();
        tellChanged(CONFIG_CHANGED_DIAL_PLAN);
    }
    void setLineKeys(int line)
    {
        kit::CallModel::tagLine& keys = m_model.set.lines[line];
        keys.bAnonymous = chance(50);
        keys.bReject = chance(50);
        keys.strOnCode = oneOf(kCodes);
        keys.strOffCode = oneOf(kCodes);
        keys.strRejectOn = oneOf(kCodes);
        keys.strRejectOff = oneOf(kCodes);
        keys.nMode = draw(3);
        keys.bAnswers = chance(30);
        const int seconds[] = {0, 5, 15, 30};
        keys.nAnswerAfter = seconds[draw(4)];
        const auto put = [line](const char* section, const char* key, const QString& value) {
            setLine(line, section, key, value);
        };
        put("account", "AnonymousCall", keys.bAnonymous ? "1" : "0");
        put("account", "RejectAnonymousCall", keys.bReject ? "1" : "0");
        put("account", "AnonymousCall_OnCode", keys.strOnCode);
        put("account", "AnonymousCall_OffCode", keys.strOffCode);
        put("account", "AnonymousReject_OnCode", keys.strRejectOn);
        put("account", "AnonymousReject_OffCode", keys.strRejectOff);
        put("CallOption", "eCallMode", QString::number(keys.nMode));
        put("AutoAnswer", "bEnable", keys.bAnswers ? "1" : "0");
        put("AutoAnswer", "nTimeout", QString::number(keys.nAnswerAfter));
        if (chance(80))
            tellLine(line);
    }
    void tellLine(int line)
    {
        m_model.tellLine(line);
        tellChanged(CONFIG_CHANGED_ACCOUNT, unsigned(line));
    }
    void changeASetting()
    {
        switch (draw(8)) {
        case 0:
            return setForward("AlwaysForward", m_model.set.always);
        case 1:
            return setForward("BusyForward", m_model.set.busy);
        case 2:
            return setForward("NoAnswerForward", m_model.set.noAnswer);
        case 3:
            return setWaiting();
        case 4:
            return setDisturb();
        case 5:
            return setPlan();
        case 6:
            backend.bPstn = m_model.hasPstn = chance(60);
            backend.nDefault = m_model.nDefault = draw(5) - 1;
            return;
        default:
            return setLineKeys(draw(4));
        }
    }
    void callIn()
    {
        tagCall call;
        call.strNumber = oneOf(kNumbers);
        call.nAccount = draw(m_model.hasPstn ? 5 : 4);
        call.bAnonymous = chance(25);
        for (int often = chance(30) ? draw(7) : 0; often > 0; --often)
            call.forwardedBy.append(oneOf(kTargets));
        m_model.arrive(call.strNumber, call.nAccount, call.bAnonymous, call.forwardedBy);
        backend.arrive(call);
    }
    void callOut()
    {
        const QString number = oneOf(kNumbers);
        const int account = draw(6) - 1;
        m_model.dial(number, account);
        rules->dial(number, account);
    }
    void actOnACall()
    {
        const int id = drawCall();
        const QString number = oneOf(kNumbers);
        const bool flag = chance(50);
        switch (draw(13)) {
        case 0:
        case 1:
            m_model.answer(id);
            rules->answer(id);
            break;
        case 2:
            m_model.decline(id);
            rules->decline(id);
            break;
        case 3:
            m_model.forward(id, number);
            rules->forward(id, number);
            break;
        case 4:
            m_model.hangUp(id);
            rules->hangUp(id);
            break;
        case 5:
            m_model.hold(id, flag);
            rules->setHeld(id, flag);
            break;
        case 6:
            m_model.mute(id, flag);
            rules->setMuted(id, flag);
            break;
        case 7:
            m_model.transfer(id, number);
            rules->transfer(id, number);
            break;
        case 8: {
            const QString tones = oneOf(kTones);
            m_model.tones(id, tones);
            rules->sendTones(id, tones);
            break;
        }
        case 9:
        case 10:
        case 11:
            actOnTwo(id);
            break;
        default:
            actOutside(id, flag);
        }
    }
    void actOnTwo(int id)
    {
        const int other = drawCall();
        const bool can = backend.bConnects = chance(80);
        const int act = draw(10);
        if (act < 2) {
            m_model.connect(id, other, can);
            rules->connect(id, other);
        } else if (act < 7) {
            m_model.join(id, other, can);
            rules->join(id, other);
        } else {
            m_model.split(id);
            rules->split(id);
        }
    }
    void actOutside(int id, bool ends)
    {
        if (ends) {
            m_model.endFromOutside(id);
            backend.endFromOutside(id, CALL_HUNG_UP);
            return;
        }
        m_model.answerFromOutside(id);
        for (const tagCall& call : QList<tagCall>(backend.live)) {
            if (call.nId == id && !call.bIncoming && call.eState == CALL_RINGING)
                backend.answerFromOutside(id);
        }
    }
    void pass(int ms)
    {
        m_model.pass(ms);
        kit::stepTime(ms);
    }
    // One act on both sides, and what came of it.
    template <typename Act>
    void step(const char* name, Act act)
    {
        m_model.expectIds(callNewId() + 1);
        act();
        pass(1);
        ASSERT_EQ(orders().join("\n").toStdString(), m_model.takeOrders().join("\n").toStdString()) << name;
        QStringList failures;
        for (const tagCall& call : std::exchange(news.calls, {})) {
            if (!call.strReason.isEmpty())
                failures.append(call.strReason);
        }
        ASSERT_EQ(failures.join("\n").toStdString(), m_model.takeFailures().join("\n").toStdString()) << name;
        ASSERT_EQ(shown(), modelled()) << name;
    }
    std::string shown() const
    {
        QStringList all;
        for (const tagCall& call : rules->calls())
            all.append(QString("%1 %2 %3 with %4")
                           .arg(call.nId)
                           .arg(call.eState == CALL_TALKING)
                           .arg(call.bHeld)
                           .arg(call.nJoined));
        return all.join("\n").toStdString();
    }
    std::string modelled() const
    {
        QStringList all;
        for (const kit::CallModel::tagCall& call : m_model.calls)
            all.append(
                QString("%1 %2 %3 with %4").arg(call.nId).arg(call.bTalks).arg(call.bHeld).arg(call.nJoined));
        return all.join("\n").toStdString();
    }
    void play(int count)
    {
        for (int call = 0; call < count && !HasFatalFailure(); ++call) {
            if (chance(40))
                step("setting", [this] { changeASetting(); });
            step("call", [this] { chance(60) ? callIn() : callOut(); });
            for (int acts = draw(kActsAtMost); acts > 0 && !HasFatalFailure(); --acts)
                step("act", [this] { actOnACall(); });
            if (chance(50))
                step("time", [this] { pass(draw(30000)); });
        }
    }
    // Until nothing is there, and nothing is awaited.
    void drain()
    {
        for (int round = 0; round < 100 && !HasFatalFailure(); ++round) {
            step("end", [this] {
                for (const tagCall& call : QList<tagCall>(backend.live)) {
                    m_model.endFromOutside(call.nId);
                    backend.endFromOutside(call.nId, CALL_HUNG_UP);
                }
            });
        }
        step("time", [this] { pass(110000); });
        ASSERT_TRUE(backend.live.isEmpty());
    }
    // It grows until it is full.
    static void fillLog()
    {
        for (int entry = 0; entry < kLogEntries; ++entry)
            hostLog("broadcast", "0x10007 13 0");
    }
    static qsizetype files()
    {
        return QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size();
    }
    static size_t heap()
    {
        const struct mallinfo2 held = mallinfo2();
        return held.uordblks + held.hblkhd;
    }

    kit::CallModel m_model;
    unsigned m_nSeed;
    std::mt19937 m_random;
};

TEST_F(ModelledCalls, BecomeWhatTheModelSaysAndLeaveNothingBehind)
{
    const int count = qEnvironmentVariableIsSet("HX_LONG") ? kLongCalls : kCalls;
    fillLog();
    play(count / 5);
    drain();
    ASSERT_FALSE(HasFatalFailure());
    const qsizetype filesBefore = files();
    const size_t heapBefore = heap();
    play(count);
    drain();
    ASSERT_FALSE(HasFatalFailure());
    EXPECT_EQ(files(), filesBefore);
    EXPECT_LT(heap(), heapBefore + kGrowthKiB * 1024);
}

} // namespace
