#pragma once
// The head of a request. Whatever two programs could read differently is refused: where a request ends must
// not depend on who reads it.
#include "tools/signServer/WebExchange.h"

// Where the head ends in what has come; 0 while it has not come whole, -1 when a line ends without a carriage
// return. scanned: how far earlier calls looked.
qsizetype FindHeadEnd(const QByteArray& come, qsizetype& scanned);
// Fills the request; empty, or why it is refused.
QByteArray ReadHead(const QByteArray& head, WebRequest& request);
