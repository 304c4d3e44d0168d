#pragma once
// What the call screen says of a call. User-interface thread.
#include "host/services/phone/tagCall.h"

// "In call", "On hold", why it failed; in the present language.
QString callStateText(const tagCall& call);
// Who it is: the name that came with the call, or of the contact with its number; else the number.
QString callWhoText(const tagCall& call);
// With a dot between them, where both say something.
QString callJoinedText(const QString& one, const QString& other);
// The user's own number of a line; empty when it has none.
QString callOwnNumber(int line);
