// Questions to STUN servers and their answers, whole and damaged, and when a question is sent again.
#include "sip/stunQuery.h"
#include "tests/kit/plain/stunServer.h"
#include <gtest/gtest.h>

namespace {

using stunMessage::ANSWER;

QByteArray bytesOf(const stunMessage::Request& request)
{
    return QByteArray(reinterpret_cast<const char*>(request.data()), qsizetype(request.size()));
}

stunMessage::Id id()
{
    stunMessage::Id id = {};
    for (size_t i = 0; i < id.size(); ++i)
        id[i] = static_cast<unsigned char>(i + 1);
    return id;
}

ANSWER read(const QByteArray& text, tagStunPlace& place)
{
    // Nothing behind the end is looked at.
    const std::vector<unsigned char> bytes(text.begin(), text.end());
    return stunMessage::read(bytes.data(), bytes.size(), id(), place);
}

QByteArray answer(bool isOld = false, const QByteArray& address = "203.0.113.7", uint16_t port = 40001)
{
    return kit::StunServer::answer(bytesOf(stunMessage::request(id())), address, port, isOld);
}

// With further parts behind, or in front.
QByteArray with(const QByteArray& message, const QByteArray& parts, bool isFirst = false)
{
    QByteArray text = message;
    text.insert(isFirst ? 20 : text.size(), parts);
    text[2] = char((text.size() - 20) >> 8);
    text[3] = char((text.size() - 20) & 255);
    return text;
}

// When a question of that pace is sent, and when it is given up.
std::vector<int64_t> timesOf(const tagStunPace& pace)
{
    StunQuery query(pace, 1000);
    std::vector<int64_t> times;
    int64_t now = 1000;
    for (; !query.isOver(now); ++now) {
        if (query.isDue(now))
            times.push_back(now - 1000);
    }
    times.push_back(now - 1000);
    return times;
}

} // namespace

TEST(StunMessage, AQuestionIsWhatTheStandardSays)
{
    const QByteArray text = bytesOf(stunMessage::request(id()));
    // The checksum is of another program.
    EXPECT_EQ(text.toHex().toStdString(), "000100082112a4420102030405060708090a0b0c802800045b20f9cc");
    stunMessage::Id one = {}, two = {};
    ASSERT_TRUE(stunMessage::newId(one) && stunMessage::newId(two));
    EXPECT_NE(one, two);
}

TEST(StunMessage, TheAnswersOfNewAndOldServersAreRead)
{
    for (const bool isOld : {false, true}) {
        tagStunPlace place;
        ASSERT_EQ(read(answer(isOld), place), ANSWER::PLACE) << isOld;
        EXPECT_EQ(place.host, "203.0.113.7");
        EXPECT_EQ(place.nPort, 40001);
    }
    // A router has changed the plain address on the way.
    tagStunPlace place;
    ASSERT_EQ(read(with(answer(), answer(true, "10.0.0.1", 5).mid(20), true), place), ANSWER::PLACE);
    EXPECT_EQ(place.host, "203.0.113.7");
    // The server's name, which is no multiple of four bytes.
    EXPECT_EQ(read(with(answer(), QByteArray("\x80\x22\x00\x03"
                                             "me!\0",
                                             8)),
                   place),
              ANSWER::PLACE);
}

TEST(StunMessage, WhatIsDamagedOrOfAnotherQuestionIsNoAnswer)
{
    const QByteArray good = answer();
    for (qsizetype length = 0; length < good.size(); ++length) {
        tagStunPlace place;
        EXPECT_EQ(read(good.left(length), place), ANSWER::NONE) << length;
        EXPECT_EQ(place.nPort, 0);
    }
    // Its kind, its length, the cookie, the number.
    for (int at = 0; at < 20; ++at) {
        QByteArray text = good;
        text[at] = char(text[at] ^ 4);
        tagStunPlace place;
        EXPECT_EQ(read(text, place), ANSWER::NONE) << at;
    }
    tagStunPlace place;
    EXPECT_EQ(read(good + good, place), ANSWER::NONE);
    EXPECT_EQ(read(with(good, QByteArray(2, '\0')), place), ANSWER::NONE) << "half a part";
    EXPECT_EQ(read(with(good, QByteArray(2000, '\0')), place), ANSWER::NONE);
}

TEST(StunMessage, AnAnswerThatSaysNothingOfUseIsARefusal)
{
    tagStunPlace place;
    const QByteArray empty = answer().left(20);
    const auto part = [](int kind, int length, int bytes) {
        return QByteArray(1, char(kind >> 8)) + char(kind) + char(length >> 8) + char(length) +
               QByteArray(bytes, '\1');
    };
    EXPECT_EQ(read(with(empty, ""), place), ANSWER::REFUSED) << "no address";
    EXPECT_EQ(read(with(answer(), part(0x0030, 4, 4)), place), ANSWER::REFUSED) << "has to be understood";
    EXPECT_EQ(read(with(answer(), part(0x8022, 5, 4)), place), ANSWER::REFUSED) << "beyond the end";
    EXPECT_EQ(read(with(answer(), part(0x8022, 0xffff, 0)), place), ANSWER::REFUSED) << "far beyond";
    EXPECT_EQ(read(with(answer(), part(0x8028, 4, 4)), place), ANSWER::REFUSED) << "wrong checksum";
    EXPECT_EQ(read(with(empty, part(0x0020, 4, 4)), place), ANSWER::REFUSED) << "short";
    EXPECT_EQ(read(with(empty, part(0x0020, 20, 20)), place), ANSWER::REFUSED) << "long";
    EXPECT_EQ(read(with(empty, QByteArray::fromHex("0020000800020102") + "abcd"), place), ANSWER::REFUSED)
        << "of another family";
    for (const char* address : {"0.0.0.0", "0.1.2.3", "224.0.0.1", "240.0.0.1", "255.255.255.255"})
        EXPECT_EQ(read(answer(false, address), place), ANSWER::REFUSED) << address;
    EXPECT_EQ(read(answer(false, "203.0.113.7", 0), place), ANSWER::REFUSED);
    EXPECT_EQ(place.nPort, 0);
}

TEST(StunQuery, ItIsSentAgainAfterEverLongerTimesAndGivenUp)
{
    EXPECT_EQ(timesOf(StunQuery::STANDARD),
              (std::vector<int64_t>{0, 500, 1500, 3500, 7500, 15500, 31500, 39500}));
    EXPECT_EQ(timesOf(StunQuery::OF_A_CALL), (std::vector<int64_t>{0, 60, 180, 400}));
}

TEST(StunQuery, OneAnswerEndsItAndBeforeItIsSentThereIsNone)
{
    StunQuery query(StunQuery::STANDARD, 0);
    const QByteArray good = kit::StunServer::answer(bytesOf(query.request()), "203.0.113.7", 40001, false);
    const auto* bytes = reinterpret_cast<const unsigned char*>(good.constData());
    EXPECT_FALSE(query.take(bytes, size_t(good.size()))) << "somebody has guessed the number";
    ASSERT_TRUE(query.isDue(0));
    EXPECT_FALSE(query.take(bytes, size_t(good.size() - 4)));
    EXPECT_FALSE(query.isOver(1));
    EXPECT_TRUE(query.take(bytes, size_t(good.size())));
    EXPECT_TRUE(query.isOver(1));
    EXPECT_FALSE(query.isDue(10000));
    EXPECT_EQ(query.place().nPort, 40001);
    EXPECT_FALSE(query.take(bytes, size_t(good.size()))) << "said twice";
    StunQuery refused(StunQuery::STANDARD, 0);
    ASSERT_TRUE(refused.isDue(0));
    QByteArray no = kit::StunServer::answer(bytesOf(refused.request()), "203.0.113.7", 40001, false);
    no[1] = 0x11;
    EXPECT_TRUE(refused.take(reinterpret_cast<const unsigned char*>(no.constData()), size_t(no.size())));
    EXPECT_TRUE(refused.isOver(1));
    EXPECT_EQ(refused.place().nPort, 0);
}
