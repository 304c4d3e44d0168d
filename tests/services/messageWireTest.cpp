#include "host/services/messages/messageWire.h"
#include <gtest/gtest.h>

using messageWire::DECODED;
using messageWire::tagFrame;

namespace {

tagFrame post()
{
    tagFrame frame;
    frame.message = 0x10007;
    frame.wParam = 3;
    frame.lParam = 0xFFFFFFFF;
    frame.extra = "block";
    return frame;
}

DECODED decode(const QByteArray& bytes, tagFrame* frame = nullptr)
{
    tagFrame read;
    qsizetype used = 0;
    const DECODED decoded = messageWire::decode(bytes.constData(), bytes.size(), read, used);
    EXPECT_EQ(used > 0, decoded == DECODED::FRAME);
    if (frame)
        *frame = read;
    return decoded;
}

// The frame with one of its eight words replaced.
QByteArray withWord(const tagFrame& frame, int word, quint32 value)
{
    QByteArray bytes = messageWire::encode(frame);
    for (int i = 0; i < 4; ++i)
        bytes[word * 4 + i] = char(value >> (8 * i));
    return bytes;
}

enum { MARK, KIND, TICKET, MESSAGE, W, L, RESULT, EXTRA };

TEST(MessageWire, FrameComesBackAsItWas)
{
    tagFrame read;
    ASSERT_EQ(decode(messageWire::encode(post()) + "next", &read), DECODED::FRAME);
    EXPECT_EQ(read.eKind, messageWire::KIND_POST);
    EXPECT_EQ(read.message, 0x10007u);
    EXPECT_EQ(read.wParam, 3u);
    EXPECT_EQ(read.lParam, 0xFFFFFFFFu);
    EXPECT_EQ(read.extra, "block");
}

TEST(MessageWire, ReplyCarriesANegativeResult)
{
    tagFrame reply;
    reply.eKind = messageWire::KIND_REPLY;
    reply.nTicket = 9;
    reply.nResult = -5;
    tagFrame read;
    ASSERT_EQ(decode(messageWire::encode(reply), &read), DECODED::FRAME);
    EXPECT_EQ(read.nTicket, 9u);
    EXPECT_EQ(read.nResult, -5);
}

TEST(MessageWire, ReplyCarriesAByteBlock)
{
    tagFrame reply;
    reply.eKind = messageWire::KIND_REPLY;
    reply.nTicket = 9;
    reply.extra = QByteArray("a\0b", 3);
    tagFrame read;
    ASSERT_EQ(decode(messageWire::encode(reply), &read), DECODED::FRAME);
    EXPECT_EQ(read.extra, reply.extra);
}

TEST(MessageWire, EveryStartOfAFrameAsksForMore)
{
    const QByteArray bytes = messageWire::encode(post());
    for (int size = 0; size < bytes.size(); ++size)
        EXPECT_EQ(decode(bytes.left(size)), DECODED::NEED_MORE) << size;
}

TEST(MessageWire, WordsOutOfRangeAreRefused)
{
    EXPECT_EQ(decode(withWord(post(), MARK, 0)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), KIND, 0)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), KIND, 5)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), EXTRA, messageWire::MAX_EXTRA + 1)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), EXTRA, 0xFFFFFFFF)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), EXTRA, messageWire::MAX_EXTRA)), DECODED::NEED_MORE);
}

TEST(MessageWire, EachKindHasOneFormOnly)
{
    EXPECT_EQ(decode(withWord(post(), TICKET, 1)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), RESULT, 1)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), KIND, messageWire::KIND_SEND)), DECODED::BAD);
    EXPECT_EQ(decode(withWord(post(), KIND, messageWire::KIND_BROADCAST)), DECODED::BAD);
    tagFrame reply;
    reply.eKind = messageWire::KIND_REPLY;
    EXPECT_EQ(decode(messageWire::encode(reply)), DECODED::BAD);
    reply.nTicket = 1;
    for (const int word : {MESSAGE, W, L})
        EXPECT_EQ(decode(withWord(reply, word, 1)), DECODED::BAD) << word;
}

} // namespace
