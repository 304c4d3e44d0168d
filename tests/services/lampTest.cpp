// Lamps of extensions: who watches what, and the extensions of the simulated phone.
#include "host/services/phone/phoneSimulation.h"
#include "support/host/registry.h"
#include "tests/services/lampStand.h"

namespace {

class Lamps : public LampStand
{
protected:
    static simulatedLamps& world()
    {
        phoneService::instance().backend();
        return phoneSimulation::instance()->extensions();
    }
    static void setLine(int line, LINE_STATE state)
    {
        tagLineSetting setting;
        setting.state = state;
        setting.user = "1001";
        phoneService::instance().backend();
        phoneSimulation::instance()->setLine(line, setting);
    }
};

// Counts what it is asked for.
class FakeLamps : public phoneLamps
{
public:
    void setNews(lampNews* news) override { m_pNews = news; }
    void watch(const tagLampWatch& watch) override { asked.append("+" + watch.strNumber); }
    void unwatch(const tagLampWatch& watch) override { asked.append("-" + watch.strNumber); }
    void watchList(int line) override { asked.append("+list" + QString::number(line)); }
    void unwatchList(int line) override { asked.append("-list" + QString::number(line)); }
    int pickUp(const tagLampWatch& watch) override
    {
        asked.append("pick " + watch.strNumber);
        return 7;
    }
    lampNews* m_pNews = nullptr;
    QStringList asked;
};

} // namespace

TEST_F(Lamps, AnExtensionIsToldWhileItIsWatched)
{
    setLine(0, LINE_REGISTERED);
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    book().watch(kAnna);
    EXPECT_EQ(heard(), QStringList{"8001@0 1"});
    world().set("8001", LAMP_RINGING);
    world().set("8001", LAMP_RINGING);
    world().set("8009", LAMP_BUSY);
    world().set("8001", LAMP_BUSY);
    EXPECT_EQ(heard(), (QStringList{"8001@0 2", "8001@0 3"}));
    EXPECT_EQ(book().state(kAnna), LAMP_BUSY);
    book().unwatch(kAnna);
    world().set("8001", LAMP_IDLE);
    EXPECT_EQ(heard(), QStringList());
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    EXPECT_FALSE(world().isWatched("8001"));
}

TEST_F(Lamps, WhatTwoWatchEndsWithTheSecond)
{
    FakeLamps lamps;
    book().setLamps(&lamps);
    book().watch(kAnna);
    book().watch(kAnna);
    book().unwatch(kAnna);
    EXPECT_EQ(lamps.asked, QStringList{"+8001"});
    book().unwatch(kAnna);
    book().unwatch(kAnna);
    EXPECT_EQ(lamps.asked, (QStringList{"+8001", "-8001"}));
    book().setLamps(nullptr);
}

TEST_F(Lamps, WithoutTheLineNothingIsKnown)
{
    setLine(0, LINE_REGISTER_FAILED);
    book().watch(kAnna);
    world().set("8001", LAMP_BUSY);
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    setLine(0, LINE_REGISTERED);
    EXPECT_EQ(book().state(kAnna), LAMP_BUSY);
    setLine(0, LINE_UNREGISTERED);
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    EXPECT_EQ(heard(), (QStringList{"8001@0 3", "8001@0 0"}));
    book().unwatch(kAnna);
}

TEST_F(Lamps, TheDefaultLineIsWhicheverIsRegistered)
{
    const tagLampWatch any{-1, "8001"};
    setLine(0, LINE_REGISTER_FAILED);
    setLine(2, LINE_REGISTERED);
    book().watch(any);
    EXPECT_EQ(book().state(any), LAMP_IDLE);
    setLine(2, LINE_UNREGISTERED);
    EXPECT_EQ(book().state(any), LAMP_UNKNOWN);
    book().unwatch(any);
}

TEST_F(Lamps, WatchesOutliveTheBackendAndAreAskedForAnew)
{
    book().watch(kAnna);
    book().watchList(2);
    FakeLamps lamps;
    book().setLamps(&lamps);
    EXPECT_EQ(lamps.asked, (QStringList{"+list2", "+8001"}));
    lamps.m_pNews->lampChanged(kAnna, LAMP_BUSY);
    lamps.asked.clear();
    book().renew();
    EXPECT_EQ(lamps.asked, (QStringList{"+list2", "+8001"}));
    heard();
    book().setLamps(nullptr);
    EXPECT_EQ(lamps.m_pNews, nullptr);
    EXPECT_EQ(heard(), QStringList{"8001@0 0"});
    book().unwatch(kAnna);
    book().unwatchList(2);
    EXPECT_EQ(book().pickUp(kAnna), 0);
}

TEST_F(Lamps, ABackendThatComesLaterIsAskedForWhatIsWatched)
{
    book().watch(kAnna);
    setLine(0, LINE_REGISTERED); // makes the simulation
    EXPECT_EQ(book().state(kAnna), LAMP_IDLE);
    phoneService::instance().setBackend(nullptr);
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    book().unwatch(kAnna);
}

TEST_F(Lamps, WhoIsToldMayTakeWatchesAway)
{
    setLine(0, LINE_REGISTERED);
    setLine(1, LINE_REGISTERED);
    book().watch(kAnna);
    book().watch(kBen);
    int calls = 0;
    int listener = 0;
    listener = book().addListener({[&](const tagLampWatch&, LAMP_STATE) {
                                       ++calls;
                                       book().unwatch(kAnna);
                                       book().unwatch(kBen);
                                       book().removeListener(listener);
                                   },
                                   nullptr});
    world().set("8001", LAMP_BUSY);
    world().set("8002", LAMP_BUSY);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(world().isWatched("8002"));
}

TEST_F(Lamps, TheListOfALineComesFromItsFileOrByHand)
{
    writeFile("/rundata/config/user/voip/sipAccount1.cfg",
              "[account]\nBLFList= 8001=Anna , 8002,,8003=Ben=Bo\n");
    setLine(1, LINE_REGISTERED);
    book().watchList(1);
    EXPECT_EQ(members(1), (QStringList{"8001=Anna", "8002=", "8003=Ben=Bo"}));
    world().setList(1, "8009");
    EXPECT_EQ(members(1), QStringList{"8009="});
    world().setList(1, "8009");
    EXPECT_EQ(heard().count("list 1"), 2);
    setLine(1, LINE_UNREGISTERED);
    EXPECT_EQ(members(1), QStringList());
    book().unwatchList(1);
}

TEST_F(Lamps, WhatAServerSendsIsBounded)
{
    setLine(1, LINE_REGISTERED);
    QStringList many;
    for (int i = 0; i < 1000; ++i)
        many.append(QString::number(i));
    book().watchList(1);
    world().setList(1, many.join(','));
    EXPECT_EQ(book().list(1).size(), lampBook::MEMBERS_MAX);
    book().unwatchList(1);
    FakeLamps lamps;
    book().setLamps(&lamps);
    for (int i = 0; i < 1000; ++i)
        book().watch({0, QString::number(i)});
    EXPECT_EQ(lamps.asked.size(), lampBook::WATCHES_MAX);
    for (int i = 0; i < 1000; ++i)
        book().unwatch({0, QString::number(i)});
    EXPECT_EQ(lamps.asked.size(), 2 * lampBook::WATCHES_MAX);
    book().setLamps(nullptr);
}

TEST_F(Lamps, ACallThatRingsThereIsTakenHere)
{
    setLine(0, LINE_REGISTERED);
    book().watch(kAnna);
    EXPECT_EQ(book().pickUp(kAnna), 0);
    world().set("8001", LAMP_RINGING);
    const int id = book().pickUp(kAnna);
    ASSERT_NE(id, 0);
    const QList<tagCall> calls = phoneService::instance().calls();
    ASSERT_EQ(calls.size(), 1);
    EXPECT_EQ(calls[0].nId, id);
    EXPECT_EQ(calls[0].strNumber, "8001");
    EXPECT_EQ(calls[0].nAccount, 0);
    EXPECT_EQ(calls[0].eState, CALL_TALKING);
    EXPECT_EQ(book().state(kAnna), LAMP_IDLE);
    book().unwatch(kAnna);
}

TEST_F(Lamps, WhoNoLongerListensIsToldNothing)
{
    static int calls; // outlives whoever is told by mistake
    calls = 0;
    const int listener =
        book().addListener({[](const tagLampWatch&, LAMP_STATE) { ++calls; }, [](int) { ++calls; }});
    FakeLamps lamps;
    book().setLamps(&lamps);
    book().watch(kAnna);
    book().watchList(2);
    lamps.m_pNews->lampChanged(kAnna, LAMP_BUSY);
    lamps.m_pNews->listChanged(2, {{"8009", ""}});
    EXPECT_EQ(calls, 2);
    book().removeListener(listener);
    lamps.m_pNews->lampChanged(kAnna, LAMP_IDLE);
    lamps.m_pNews->listChanged(2, {});
    EXPECT_EQ(calls, 2);
    book().unwatch(kAnna);
    book().unwatchList(2);
    book().setLamps(nullptr);
}

TEST_F(Lamps, AListIsGoneWithTheBackendThatToldIt)
{
    FakeLamps lamps;
    book().setLamps(&lamps);
    book().watchList(2);
    lamps.m_pNews->listChanged(2, {{"8009", "Ida"}});
    EXPECT_EQ(members(2), QStringList{"8009=Ida"});
    heard();
    book().setLamps(nullptr);
    EXPECT_EQ(members(2), QStringList());
    EXPECT_EQ(heard(), QStringList{"list 2"});
    book().unwatchList(2);
}
