// Records between the phone and its SIP user agent, whole and damaged.
#include "sip/sipWire.h"
#include <cstring>
#include <gtest/gtest.h>

namespace {

using sipWire::TAKEN;

tagSipAccount soundAccount()
{
    auto account = sipWire::make<tagSipAccount>(SIP_ACCOUNT, 2);
    sipWire::setText(account.szUser, "anna");
    sipWire::setText(account.szServer, "sip.example.com");
    account.nExpires = 3600;
    return account;
}

template <typename Record>
TAKEN taken(const Record& record)
{
    sipWire::Reader reader;
    reader.add(&record, sizeof record);
    return reader.take();
}

} // namespace

TEST(SipWire, ARecordComesOutAsItWentInWhateverThePieces)
{
    const tagSipAccount account = soundAccount();
    const auto hello = sipWire::make<tagSipHead>(SIP_HELLO, 0);
    sipWire::Reader reader;
    const char* bytes = reinterpret_cast<const char*>(&account);
    for (size_t i = 0; i + 1 < sizeof account; ++i) {
        reader.add(bytes + i, 1);
        ASSERT_EQ(reader.take(), TAKEN::NEED_MORE) << i;
    }
    reader.add(bytes + sizeof account - 1, 1);
    reader.add(&hello, sizeof hello);
    ASSERT_EQ(reader.take(), TAKEN::RECORD);
    EXPECT_EQ(memcmp(&reader.as<tagSipAccount>(), &account, sizeof account), 0);
    ASSERT_EQ(reader.take(), TAKEN::RECORD);
    EXPECT_EQ(reader.head().eKind, SIP_HELLO);
    EXPECT_EQ(reader.take(), TAKEN::NEED_MORE);
    EXPECT_EQ(reader.size(), 0u);
}

TEST(SipWire, ARecordTooLongTooShortOrOfAnUnknownKindIsRefusedByItsHeadAlone)
{
    for (int off : {-1, 1, 1 << 20}) {
        tagSipAccount account = soundAccount();
        account.head.nLength += uint32_t(off);
        sipWire::Reader reader;
        reader.add(&account.head, sizeof account.head);
        EXPECT_EQ(reader.take(), TAKEN::BAD) << off;
    }
    for (uint32_t kind : {0u, 4u, 99u, 0xffffffffu}) {
        tagSipHead head = sipWire::make<tagSipHead>(SIP_END, 0);
        head.eKind = kind;
        EXPECT_EQ(taken(head), TAKEN::BAD) << kind;
    }
}

TEST(SipWire, ATextWithoutAnEndOrWithControlCharactersIsRefused)
{
    tagSipAccount account = soundAccount();
    memset(account.szUser, 'a', sizeof account.szUser);
    EXPECT_EQ(taken(account), TAKEN::BAD);
    account.szUser[sizeof account.szUser - 1] = 0;
    EXPECT_EQ(taken(account), TAKEN::RECORD);
    memcpy(account.szUser, "a\r\nTo: b", 9);
    EXPECT_EQ(taken(account), TAKEN::BAD);

    auto media = sipWire::make<tagSipMedia>(SIP_TALK, SIP_CALL_FIRST);
    sipWire::setText(media.szSdp, "v=0\r\ns=-\r\n");
    EXPECT_EQ(taken(media), TAKEN::RECORD);
    media.szSdp[1] = 7;
    EXPECT_EQ(taken(media), TAKEN::BAD);
    memset(media.szSdp, 'a', sizeof media.szSdp);
    EXPECT_EQ(taken(media), TAKEN::BAD);
}

TEST(SipWire, NumbersKeepTheirRanges)
{
    tagSipAccount account = soundAccount();
    account.nPort = 65536;
    EXPECT_EQ(taken(account), TAKEN::BAD);
    account = soundAccount();
    account.eTransport = SIP_TLS + 1;
    EXPECT_EQ(taken(account), TAKEN::BAD);
    account = soundAccount();
    account.head.nId = SIP_LINE_COUNT;
    EXPECT_EQ(taken(account), TAKEN::BAD);
    account = soundAccount();
    account.head.nUnused = 1;
    EXPECT_EQ(taken(account), TAKEN::BAD);
    account = soundAccount();
    account.nExpires = 59;
    EXPECT_EQ(taken(account), TAKEN::BAD);
    EXPECT_EQ(taken(sipWire::make<tagSipAccount>(SIP_ACCOUNT, 0)), TAKEN::RECORD);

    auto tone = sipWire::make<tagSipTone>(SIP_TONE, SIP_CALL_FIRST);
    tone.nMs = 100;
    tone.nTone = '5';
    EXPECT_EQ(taken(tone), TAKEN::RECORD);
    tone.nTone = '=';
    EXPECT_EQ(taken(tone), TAKEN::BAD);

    auto dial = sipWire::make<tagSipDial>(SIP_DIAL, SIP_CALL_FIRST_INCOMING);
    EXPECT_EQ(taken(dial), TAKEN::BAD);
    dial.head.nId = SIP_CALL_FIRST;
    EXPECT_EQ(taken(dial), TAKEN::RECORD);

    dial.nForwards = SIP_FORWARDS_MAX;
    memset(dial.szForwardedBy[SIP_FORWARDS_MAX - 1], 'a', SIP_TARGET_SIZE);
    EXPECT_EQ(taken(dial), TAKEN::BAD);
    dial.szForwardedBy[SIP_FORWARDS_MAX - 1][SIP_TARGET_SIZE - 1] = 0;
    EXPECT_EQ(taken(dial), TAKEN::RECORD);
    dial.nForwards = SIP_FORWARDS_MAX + 1;
    EXPECT_EQ(taken(dial), TAKEN::BAD);

    auto stun = sipWire::make<tagSipStun>(SIP_STUN, 0);
    stun.bSilent = 1;
    EXPECT_EQ(taken(stun), TAKEN::RECORD);
    stun.nPort = 3478;
    sipWire::setText(stun.szAddress, "192.0.2.1");
    EXPECT_EQ(taken(stun), TAKEN::BAD);
    stun.bSilent = 0;
    EXPECT_EQ(taken(stun), TAKEN::RECORD);

    auto line = sipWire::make<tagSipLine>(SIP_LINE, 0);
    line.eTls = SIP_TLS_NOT_SPOKEN;
    EXPECT_EQ(taken(line), TAKEN::RECORD);
    line.eTls = SIP_TLS_NOT_SPOKEN + 1;
    EXPECT_EQ(taken(line), TAKEN::BAD);

    auto peer = sipWire::make<tagSipPeer>(SIP_PEER, SIP_CALL_FIRST);
    EXPECT_EQ(taken(peer), TAKEN::BAD);
    sipWire::setText(peer.szAddress, "sip:200@pbx");
    EXPECT_EQ(taken(peer), TAKEN::RECORD);

    for (const uint32_t call : {uint32_t(SIP_CALL_FIRST), uint32_t(SIP_CALL_FIRST_INCOMING)}) {
        auto place = sipWire::make<tagSipTarget>(SIP_PLACE, call);
        EXPECT_EQ(taken(place), TAKEN::BAD) << "it is nowhere";
        sipWire::setText(place.szTarget, "sip:200@pbx");
        EXPECT_EQ(taken(place), call == SIP_CALL_FIRST ? TAKEN::RECORD : TAKEN::BAD);
    }

    for (const SIP_RECORD kind : {SIP_REFUSE, SIP_HANG_UP, SIP_TRANSFERRED}) {
        auto status = sipWire::make<tagSipStatus>(kind, SIP_CALL_FIRST);
        status.nStatus = kind == SIP_HANG_UP ? 0 : 486;
        EXPECT_EQ(taken(status), TAKEN::RECORD) << kind;
        status.bTaken = 1;
        EXPECT_EQ(taken(status), kind == SIP_TRANSFERRED ? TAKEN::RECORD : TAKEN::BAD) << kind;
        status.bTaken = 2;
        EXPECT_EQ(taken(status), TAKEN::BAD) << kind;
        status.bTaken = 0;
        for (const auto& [warning, isSound] :
             {std::pair(299u, false), {300u, true}, {399u, true}, {400u, false}}) {
            status.nWarning = warning;
            EXPECT_EQ(taken(status), isSound && kind == SIP_REFUSE ? TAKEN::RECORD : TAKEN::BAD) << warning;
        }
    }

    auto arrived = sipWire::make<tagSipArrived>(SIP_ARRIVED, SIP_CALL_FIRST_INCOMING);
    for (const auto& [refusal, isSound] :
         {std::pair(0u, true), {399u, false}, {400u, true}, {699u, true}, {700u, false}}) {
        arrived.nRefusal = refusal;
        EXPECT_EQ(taken(arrived), isSound ? TAKEN::RECORD : TAKEN::BAD) << refusal;
    }
    arrived.nRefusal = 0;
    arrived.bWantsEarly = 1;
    EXPECT_EQ(taken(arrived), TAKEN::RECORD);
    sipWire::setText(arrived.szSdp, "v=0");
    EXPECT_EQ(taken(arrived), TAKEN::BAD) << "who offers wants no offer";
    arrived.bWantsEarly = 2;
    EXPECT_EQ(taken(arrived), TAKEN::BAD);
    arrived.bWantsEarly = 0;
    arrived.nRefusal = 415;
    EXPECT_EQ(taken(arrived), TAKEN::BAD) << "what cannot be read is not told";

    for (const auto& [status, isSound] :
         {std::pair(0u, true), {399u, false}, {400u, true}, {699u, true}, {700u, false}}) {
        auto hangUp = sipWire::make<tagSipStatus>(SIP_HANG_UP, SIP_CALL_FIRST);
        hangUp.nStatus = status;
        EXPECT_EQ(taken(hangUp), isSound ? TAKEN::RECORD : TAKEN::BAD) << status;
    }

    auto early = sipWire::make<tagSipMedia>(SIP_EARLY, SIP_CALL_FIRST_INCOMING);
    EXPECT_EQ(taken(early), TAKEN::BAD) << "it would be no answer";
    sipWire::setText(early.szSdp, "v=0");
    EXPECT_EQ(taken(early), TAKEN::RECORD);
    early.head.nId = SIP_CALL_FIRST;
    EXPECT_EQ(taken(early), TAKEN::BAD);

    auto connect = sipWire::make<tagSipConnect>(SIP_CONNECT, SIP_CALL_FIRST);
    EXPECT_EQ(taken(connect), TAKEN::BAD);
    connect.nOther = SIP_CALL_FIRST; // itself
    EXPECT_EQ(taken(connect), TAKEN::BAD);
    connect.nOther = SIP_CALL_FIRST_INCOMING;
    EXPECT_EQ(taken(connect), TAKEN::RECORD);

    auto mapped = sipWire::make<tagSipMapped>(SIP_MAPPED, SIP_LINE_COUNT - 1);
    EXPECT_EQ(taken(mapped), TAKEN::BAD);
    mapped.nPort = 65535;
    EXPECT_EQ(taken(mapped), TAKEN::RECORD);

    auto referred = sipWire::make<tagSipReferred>(SIP_REFERRED, SIP_CALL_FIRST);
    EXPECT_EQ(taken(referred), TAKEN::RECORD);
    referred.bReplaces = 2;
    EXPECT_EQ(taken(referred), TAKEN::BAD);

    auto setup = sipWire::make<tagSipSetup>(SIP_SETUP, 0);
    setup.nSilentMs = setup.nOfferMs = setup.nRetryMs = setup.nRetryLastMs = 100;
    setup.nRingSeconds = 1;
    EXPECT_EQ(taken(setup), TAKEN::RECORD);
    setup.nKeepMs = 99;
    EXPECT_EQ(taken(setup), TAKEN::BAD);
    setup.nKeepMs = 100;
    EXPECT_EQ(taken(setup), TAKEN::RECORD);
}

TEST(SipWire, WhatServersTellOfKeepsItsRanges)
{
    auto watch = sipWire::make<tagSipWatch>(SIP_WATCH, 1);
    EXPECT_EQ(taken(watch), TAKEN::BAD); // of nobody
    sipWire::setText(watch.szNumber, "8001");
    EXPECT_EQ(taken(watch), TAKEN::RECORD);
    watch.nLine = SIP_LINE_COUNT;
    EXPECT_EQ(taken(watch), TAKEN::BAD);
    watch.nLine = 0;
    watch.head.nId = 0;
    EXPECT_EQ(taken(watch), TAKEN::BAD);
    EXPECT_EQ(taken(sipWire::make<tagSipHead>(SIP_UNWATCH, 0)), TAKEN::BAD);
    EXPECT_EQ(taken(sipWire::make<tagSipHead>(SIP_UNWATCH, 9)), TAKEN::RECORD);
    EXPECT_EQ(taken(sipWire::make<tagSipTarget>(SIP_WATCH_LIST, 3)), TAKEN::RECORD);
    EXPECT_EQ(taken(sipWire::make<tagSipTarget>(SIP_WATCH_LIST, 4)), TAKEN::BAD);

    auto lamp = sipWire::make<tagSipLamp>(SIP_LAMP, 1);
    lamp.eLamp = SIP_LAMP_BUSY;
    EXPECT_EQ(taken(lamp), TAKEN::RECORD);
    lamp.eLamp = SIP_LAMP_BUSY + 1;
    EXPECT_EQ(taken(lamp), TAKEN::BAD);
    auto messages = sipWire::make<tagSipMessages>(SIP_MESSAGES, 0);
    messages.nNew = SIP_MESSAGES_MAX;
    EXPECT_EQ(taken(messages), TAKEN::RECORD);
    messages.nOld = SIP_MESSAGES_MAX + 1;
    EXPECT_EQ(taken(messages), TAKEN::BAD);
    auto list = sipWire::make<tagSipList>(SIP_LIST, 0);
    list.nMembers = SIP_MEMBERS_MAX;
    EXPECT_EQ(taken(list), TAKEN::RECORD);
    ++list.nMembers;
    EXPECT_EQ(taken(list), TAKEN::BAD);
    auto member = sipWire::make<tagSipMember>(SIP_MEMBER, 0);
    member.nIndex = SIP_MEMBERS_MAX - 1;
    EXPECT_EQ(taken(member), TAKEN::RECORD);
    ++member.nIndex;
    EXPECT_EQ(taken(member), TAKEN::BAD);
    auto pickUp = sipWire::make<tagSipPickUp>(SIP_PICK_UP, SIP_CALL_FIRST);
    EXPECT_EQ(taken(pickUp), TAKEN::BAD);
    sipWire::setText(pickUp.szNumber, "8001");
    EXPECT_EQ(taken(pickUp), TAKEN::RECORD);
    pickUp.bAnonymous = 2;
    EXPECT_EQ(taken(pickUp), TAKEN::BAD);
    pickUp.bAnonymous = 1;
    EXPECT_EQ(taken(pickUp), TAKEN::RECORD);
    pickUp.head.nId = SIP_CALL_FIRST_INCOMING;
    EXPECT_EQ(taken(pickUp), TAKEN::BAD);
}

TEST(SipWire, ATextIsShortenedAtTheEndOfACharacterAndLosesWhatControls)
{
    char text[8];
    sipWire::setText(text, "abcdef\xc3\xa4");
    EXPECT_STREQ(text, "abcdef");
    sipWire::setText(text, "abcde\xc3\xa4");
    EXPECT_STREQ(text, "abcde\xc3\xa4");
    sipWire::setText(text, "a\r\nb\tc");
    EXPECT_STREQ(text, "abc");
}
