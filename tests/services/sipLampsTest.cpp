// The lamps of real lines, with a scripted user agent in the place of the real one.
#include "host/services/phone/sipLamps.h"
#include "tests/services/lampStand.h"
#include <memory>

namespace {

class SipLamps : public LampStand
{
protected:
    SipLamps()
        : lamps({[this](const void* record, size_t size) { sent(record, size); },
                 [this](int line) { return line < 0 ? nDefault : line; },
                 [this](int line) { return lists.value(line); },
                 [this](const QString& number, int line) {
                     asked.append("take " + number + "@" + QString::number(line));
                     return 77;
                 }})
    {
        book().setLamps(&lamps);
        lamps.agentIsThere();
    }
    ~SipLamps() override { book().setLamps(nullptr); }
    QStringList wanted() { return std::exchange(asked, {}); }

    template <typename Record>
    bool say(const Record& record)
    {
        sipWire::Reader reader;
        reader.add(&record, sizeof record);
        EXPECT_EQ(reader.take(), sipWire::TAKEN::RECORD);
        return lamps.take(reader);
    }
    void sayLamp(uint32_t id, SIP_LAMP_STATE lamp)
    {
        auto record = sipWire::make<tagSipLamp>(SIP_LAMP, id);
        record.eLamp = lamp;
        EXPECT_TRUE(say(record));
    }
    void sayList(uint32_t line, uint32_t count)
    {
        auto record = sipWire::make<tagSipList>(SIP_LIST, line);
        record.nMembers = count;
        EXPECT_TRUE(say(record));
    }
    void sayMember(uint32_t line, uint32_t index, const char* number, const char* name, SIP_LAMP_STATE lamp)
    {
        auto record = sipWire::make<tagSipMember>(SIP_MEMBER, line);
        record.nIndex = index;
        record.eLamp = lamp;
        sipWire::setText(record.szNumber, number);
        sipWire::setText(record.szName, name);
        EXPECT_TRUE(say(record));
    }

    int nDefault = 0;
    QMap<int, QString> lists;
    QStringList asked; // "+ID number@line" of a watch, "-ID", "list LINE address"
    sipLamps lamps;

private:
    void sent(const void* record, size_t size)
    {
        sipWire::Reader reader;
        reader.add(record, size);
        ASSERT_EQ(reader.take(), sipWire::TAKEN::RECORD);
        const QString id = QString::number(reader.head().nId);
        if (reader.head().eKind == SIP_WATCH)
            asked.append("+" + id + " " + reader.as<tagSipWatch>().szNumber + "@" +
                         QString::number(reader.as<tagSipWatch>().nLine));
        else if (reader.head().eKind == SIP_UNWATCH)
            asked.append("-" + id);
        else if (reader.head().eKind == SIP_WATCH_LIST)
            asked.append("list " + id + " " + reader.as<tagSipTarget>().szTarget);
        else
            ADD_FAILURE() << reader.head().eKind;
    }
};

} // namespace

TEST_F(SipLamps, AWatchIsAskedForOnceAndToldWithEachChange)
{
    book().watch(kAnna);
    book().watch(kAnna);
    EXPECT_EQ(wanted(), QStringList{"+1 8001@0"});
    EXPECT_EQ(heard(), QStringList());
    sayLamp(1, SIP_LAMP_RINGING);
    sayLamp(1, SIP_LAMP_RINGING);
    sayLamp(1, SIP_LAMP_BUSY);
    EXPECT_EQ(heard(), (QStringList{"8001@0 2", "8001@0 3"}));
    book().unwatch(kAnna);
    EXPECT_EQ(wanted(), QStringList());
    book().unwatch(kAnna);
    EXPECT_EQ(wanted(), QStringList{"-1"});
    sayLamp(1, SIP_LAMP_IDLE); // said before it was heard of
    EXPECT_EQ(heard(), QStringList());
}

TEST_F(SipLamps, WhatIsAskedForAnewIsNotKnownUntilItIsTold)
{
    book().watch(kAnna);
    sayLamp(1, SIP_LAMP_BUSY);
    book().renew();
    EXPECT_EQ(wanted(), (QStringList{"+1 8001@0", "-1", "+2 8001@0"}));
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    sayLamp(1, SIP_LAMP_BUSY);
    EXPECT_EQ(book().state(kAnna), LAMP_UNKNOWN);
    sayLamp(2, SIP_LAMP_IDLE);
    EXPECT_EQ(book().state(kAnna), LAMP_IDLE);
    book().unwatch(kAnna);
}

TEST_F(SipLamps, AnotherAgentIsToldAllAndWithoutOneNothingIsKnown)
{
    lists[1] = "all";
    book().watch(kAnna);
    book().watchList(1);
    sayLamp(1, SIP_LAMP_BUSY);
    sayList(1, 1);
    sayMember(1, 0, "8002", "Ben", SIP_LAMP_IDLE);
    wanted();
    heard();
    lamps.agentIsGone();
    EXPECT_EQ(heard(), (QStringList{"list 1", "8001@0 0"}));
    EXPECT_EQ(members(1), QStringList());
    book().watch(kBen);
    EXPECT_EQ(wanted(), QStringList());
    lamps.agentIsThere();
    EXPECT_EQ(wanted(), (QStringList{"list 1 all", "+2 8001@0", "+3 8002@1"}));
    sayLamp(1, SIP_LAMP_BUSY); // of no watch of this agent
    EXPECT_EQ(heard(), QStringList());
    book().unwatch(kBen);
    book().unwatch(kAnna);
    book().unwatchList(1);
}

TEST_F(SipLamps, TheDefaultLineIsAskedWhereNoneIsNamed)
{
    const tagLampWatch any{-1, "8003"};
    book().watch(any);
    EXPECT_EQ(wanted(), QStringList{"+1 8003@0"});
    sayLamp(1, SIP_LAMP_IDLE);
    nDefault = 2;
    lamps.refresh();
    EXPECT_EQ(wanted(), (QStringList{"-1", "+2 8003@2"}));
    EXPECT_EQ(book().state(any), LAMP_UNKNOWN);
    sayLamp(2, SIP_LAMP_RINGING);
    lamps.refresh();
    EXPECT_EQ(wanted(), QStringList());
    EXPECT_EQ(book().state(any), LAMP_RINGING);
    nDefault = -1;
    lamps.refresh();
    EXPECT_EQ(wanted(), QStringList{"-2"});
    EXPECT_EQ(book().state(any), LAMP_UNKNOWN);
    book().unwatch(any);
}

TEST_F(SipLamps, AListHasItsMembersAndTheirLampsAreAskedForByNobodyElse)
{
    lists[0] = "all@pbx";
    book().watch(kAnna);
    EXPECT_EQ(wanted(), QStringList{"+1 8001@0"});
    book().watchList(0);
    EXPECT_EQ(wanted(), QStringList{"list 0 all@pbx"});
    sayList(0, 2);
    sayMember(0, 0, "8001", "Anna", SIP_LAMP_BUSY);
    EXPECT_EQ(heard(), QStringList());
    sayMember(0, 1, "8002", "Ben", SIP_LAMP_IDLE);
    EXPECT_EQ(heard(), (QStringList{"list 0", "8001@0 3"}));
    EXPECT_EQ(wanted(), QStringList{"-1"});
    EXPECT_EQ(members(0), (QStringList{"8001=Anna", "8002=Ben"}));
    const tagLampWatch ben{0, "8002"};
    book().watch(ben);
    EXPECT_EQ(heard(), QStringList{"8002@0 1"});
    sayMember(0, 1, "8002", "Ben", SIP_LAMP_RINGING);
    EXPECT_EQ(heard(), QStringList{"8002@0 2"});
    // What does not fit the list is left.
    sayMember(0, 1, "8009", "Ben", SIP_LAMP_BUSY);
    sayMember(0, 7, "8002", "Ben", SIP_LAMP_BUSY);
    lamps.refresh();
    EXPECT_EQ(heard().filter("8002"), QStringList());
    EXPECT_EQ(book().state(ben), LAMP_RINGING);
    EXPECT_EQ(wanted(), QStringList());
    // Who is off the list is asked for by himself.
    sayList(0, 1);
    sayMember(0, 0, "8002", "Ben", SIP_LAMP_RINGING);
    EXPECT_EQ(wanted(), QStringList{"+2 8001@0"});
    EXPECT_EQ(heard(), (QStringList{"list 0", "8001@0 0"}));
    book().unwatchList(0);
    EXPECT_EQ(wanted(), (QStringList{"list 0 ", "+3 8002@0"}));
    book().unwatch(ben);
    book().unwatch(kAnna);
}

TEST_F(SipLamps, WhatComesOfAListOutOfTurnIsLeft)
{
    lists[0] = "all";
    book().watchList(0);
    wanted();
    sayList(0, 2);
    sayMember(0, 1, "8002", "Ben", SIP_LAMP_IDLE);
    sayMember(0, 0, "8001", "Anna", SIP_LAMP_IDLE);
    EXPECT_EQ(members(0), QStringList());
    sayMember(0, 1, "8002", "Ben", SIP_LAMP_IDLE);
    EXPECT_EQ(members(0), (QStringList{"8001=Anna", "8002=Ben"}));
    // Another one begins before the first has come.
    sayList(0, 2);
    sayMember(0, 0, "8003", "Cleo", SIP_LAMP_IDLE);
    sayList(0, 1);
    sayMember(0, 0, "8004", "Doris", SIP_LAMP_IDLE);
    EXPECT_EQ(members(0), QStringList{"8004=Doris"});
    lamps.watchList(0);
    EXPECT_EQ(wanted(), QStringList{"list 0 all"}) << "who asks again is told anew";
    book().unwatchList(0);
}

TEST_F(SipLamps, WhoIsOnAListNowMakesRoomForWhoWaitsLongest)
{
    lists[0] = "all";
    book().watchList(0);
    sayList(0, 1);
    sayMember(0, 0, "9000", "Anna", SIP_LAMP_IDLE);
    for (int i = 0; i < SIP_WATCHES_MAX + 1; ++i)
        book().watch({0, QString::number(9000 + i)});
    EXPECT_EQ(wanted().size(), SIP_WATCHES_MAX + 1) << "and the list";
    sayList(0, 1);
    sayMember(0, 0, "9001", "Ben", SIP_LAMP_IDLE);
    EXPECT_EQ(wanted(), (QStringList{"-1", QString("+%1 9000@0").arg(SIP_WATCHES_MAX + 1)}));
    for (int i = 0; i < SIP_WATCHES_MAX + 1; ++i)
        book().unwatch({0, QString::number(9000 + i)});
    book().unwatchList(0);
}

TEST_F(SipLamps, AListAtAnotherAddressIsAnotherOne)
{
    lists[0] = "all";
    book().watchList(0);
    sayList(0, 1);
    sayMember(0, 0, "8001", "Anna", SIP_LAMP_BUSY);
    wanted();
    lists[0] = "some";
    lamps.refresh();
    EXPECT_EQ(wanted(), QStringList{"list 0 some"});
    EXPECT_EQ(members(0), QStringList());
    lists.clear();
    lamps.refresh();
    EXPECT_EQ(wanted(), QStringList{"list 0 "});
    book().unwatchList(0);
    EXPECT_EQ(wanted(), QStringList());
}

TEST_F(SipLamps, BeyondWhatTheAgentWatchesOthersTakeTheirTurn)
{
    for (int i = 0; i < SIP_WATCHES_MAX + 2; ++i)
        book().watch({0, QString::number(9000 + i)});
    EXPECT_EQ(wanted().size(), SIP_WATCHES_MAX);
    book().unwatch({0, "9005"});
    EXPECT_EQ(wanted(), (QStringList{"-6", "+41 9040@0"}));
    for (int i = 0; i < SIP_WATCHES_MAX + 2; ++i)
        book().unwatch({0, QString::number(9000 + i)});
}

TEST_F(SipLamps, ACallIsTakenWhereOneRings)
{
    const tagLampWatch any{-1, "8003"};
    nDefault = 2;
    book().watch(any);
    wanted();
    EXPECT_EQ(book().pickUp(any), 0);
    sayLamp(1, SIP_LAMP_BUSY);
    EXPECT_EQ(book().pickUp(any), 0);
    EXPECT_EQ(wanted(), QStringList());
    sayLamp(1, SIP_LAMP_RINGING);
    EXPECT_EQ(book().pickUp(any), 77);
    EXPECT_EQ(wanted(), QStringList{"take 8003@2"});
    book().unwatch(any);
}

TEST_F(SipLamps, WhatIsNotAboutLampsIsForOthers)
{
    EXPECT_FALSE(say(sipWire::make<tagSipMessages>(SIP_MESSAGES, 0)));
    EXPECT_FALSE(say(sipWire::make<tagSipHead>(SIP_HELLO, 0)));
}
