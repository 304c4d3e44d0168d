#pragma once
// The messages whose senders wait for a result. Any thread.
#include "host/services/messages/processerBook.h"
#include "host/services/messages/threadReply.h"
#include <optional>

namespace replyBook {

// A number for a message that is going to be sent; never 0.
quint32 newTicket();
// The calling thread will wait for the ticket's answer, which comes over the connection (0: from this
// process).
void expect(quint32 ticket, quint64 connection);
// No result: it will not come.
void answer(quint32 ticket, const std::optional<tagReply>& reply);
// The connection ended: whoever waits for it waits no more.
void endConnection(quint64 connection);
// 1 with the reply; 0 when the peer is gone, or after timeoutMs (-1: never). The thread goes on
// answering messages that are sent to it.
int wait(quint32 ticket, int timeoutMs, tagReply& reply);
void forget(quint32 ticket);

} // namespace replyBook
