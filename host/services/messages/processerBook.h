#pragma once
// Which thread each receiver of messages belongs to. A receiver has a number that is never given again,
// so that what is on its way to one that was destroyed cannot reach another at the same address. Any
// thread.
#include "support/host/message.h"
#include <memory>

class threadQueue;
using threadQueueRef = std::shared_ptr<threadQueue>;

struct tagProcesserRef
{
    quint64 nNumber = 0; // 0: none
    threadQueueRef queue;
    bool operator==(const tagProcesserRef& other) const { return nNumber == other.nNumber; }
};

namespace processerBook {

void add(chMsgProcesser* processer);
void remove(chMsgProcesser* processer);
// The reference of a receiver that is there; an empty one for any other pointer, also for a stale one.
tagProcesserRef find(const chMsgProcesser* processer);
bool isThere(const tagProcesserRef& processer);
// Delivers the message to this one receiver, in order with all other messages of its thread.
bool post(const tagProcesserRef& processer, const msgObject& msg);

} // namespace processerBook
