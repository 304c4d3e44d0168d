#pragma once
// Which characters a document can hold, and how they are spelled. Inside this folder only.
#include <string>
#include <string_view>

// True when every letter is well-formed UTF-8 that XML allows.
bool xmlIsCleanText(std::string_view text);
// Characters that XML does not allow left out, bytes that are no UTF-8 replaced by U+FFFD.
std::string xmlCleanText(std::string_view text);
// Bytes up to the first that is no UTF-8.
size_t xmlValidLength(std::string_view text);
// True when there is nothing but blanks, tabs and line ends.
bool xmlIsBlankText(std::string_view text);

// The name itself when XML allows it, otherwise one with "_" for what it does not allow, and cut at a
// kilobyte.
std::string xmlRepairName(std::string_view name);

// Appends the text as it stands between tags, or in an attribute between double quotes.
void xmlAppendText(std::string& out, std::string_view text);
void xmlAppendAttribute(std::string& out, std::string_view text);
