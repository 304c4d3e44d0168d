#pragma once
// Numbers and addresses, as they are typed, dialled and compared.
#include "support/host/phone.h"
#include <QString>

enum { CALL_NUMBER_MAX = 128 }; // characters

// What is dialled for what was typed or stored: without the blanks, hyphens and brackets that people put
// between digits. Empty when it could not be dialled: nothing of a number or an address, control characters,
// quotes, slashes.
HX_HOST_API QString callNumberOf(const QString& typed);
// For the screen: without control characters, and no longer than a number may be.
HX_HOST_API QString callTextOf(const QString& received);
// The same of an address that comes from the network: the bare number where it is one of that server, which
// is a host; port: the server's, 0: the usual one.
HX_HOST_API QString callNumberAt(const QString& address, const QString& server, int port);
// Whether both name the same person: "sip:" in front does not count, and a host only where both have one.
HX_HOST_API bool callIsSameNumber(const QString& one, const QString& other);
