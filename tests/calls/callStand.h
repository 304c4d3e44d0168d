#pragma once
// Phones of this process that talk over real ports: each with a voice that says a tone and keeps what it
// hears.
#include "tests/players/callSide.h"
#include <functional>
#include <gtest/gtest.h>

class CallStand : public testing::Test
{
protected:
    CallStand();
    // Of a description: only this codec is left. Empty: all.
    static QByteArray only(const QByteArray& offer, const QByteArray& codec);
    // from offers, to answers.
    static void connect(CallEnd& from, CallEnd& to, const QByteArray& codec = {}, tagMediaWant want = {},
                        tagMediaWant answered = {});
    // The same, but nothing goes yet.
    static void negotiate(CallEnd& from, CallEnd& to, const QByteArray& codec, tagMediaWant want = {},
                          tagMediaWant answered = {});
    static bool waitFor(const std::function<bool()>& check, int ms = 5000);
    static void pass(int ms);
};
