#pragma once
// What the call screen says of a call. User-interface thread.
#include "host/desktop/contactBook.h"
#include "host/services/phone/tagCall.h"

class QLabel;

// "In call", "On hold", why it failed; in the present language.
QString callStateText(const tagCall& call);
// Who has sent it on to this phone; empty for nobody.
QString callForwardedText(const tagCall& call);
// The name that came with the call, of the contact with its number, or of the door phone or camera; else
// empty.
QString callNameOf(const tagCall& call, const tagContact& contact);
// With a dot between them, where both say something.
// Who that is; who keeps both back is anonymous.
QString callWhoText(const QString& name, const QString& number);
QString callJoinedText(const QString& one, const QString& other);
// The user's own number of a line; empty when it has none.
QString callOwnNumber(int line);
// Both, joined, for that label. Where they have no room even at the smallest size the first is cut, to no
// less than a third of the label, and the rest after that.
QString callFittingText(const QLabel* label, int smallest, const QString& text,
                        const QString& rest = QString());
// In lines that fit into the label, as far as its words do.
QStringList callLinesOf(const QLabel* label, const QString& text);
