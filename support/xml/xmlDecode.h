#pragma once
// The bytes of a document as UTF-8, whatever encoding they are in. Inside this folder only.
#include <stddef.h>
#include <string>
#include <string_view>

struct xmlDecoded
{
    std::string_view text;       // UTF-8 without a byte order mark: the bytes given, or own
    std::string own;             // what had to be converted
    bool plain = false;          // the document says that it is ASCII
    const char* error = nullptr; // why text ends where it does, when the bytes go on
};

// A document is in the encoding of its byte order mark or of its first letters, otherwise in the one that
// its declaration names, otherwise in UTF-8. UTF-8 is not looked at. bytes have to outlive result.
void xmlDecode(std::string_view bytes, xmlDecoded& result);
