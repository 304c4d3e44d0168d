#pragma once

#include "support/text/nuxExport.h"

// Text is UTF-8. A letter is a byte below 0x80, or a lead byte with its trail bytes.

// The byte that begins a letter of two to four bytes.
NUX_API bool chIsLeadbyte(char byte);
// Any byte of such a letter but the first.
NUX_API bool chIsTrailbyte(char byte);
// Blank, tab, line feed, vertical tab, form feed and carriage return.
NUX_API bool chIsWhiteSpace(char byte);
// The capital of an ASCII letter; any other byte as it is.
NUX_API char chUpper(char byte);

// Bytes of the letter at `text`, 0 at the terminator. A broken letter is as long as what is left of it.
NUX_API int chLetterLength(const char* text);
// Where the letter begins that the byte at `index` belongs to.
NUX_API int chLetterStart(const char* text, int index);
// The first letter boundary at or after `index`.
NUX_API int chLetterEnd(const char* text, int index);
// The most bytes, `count` or fewer, that do not end inside a letter. Reads no byte past `count`.
NUX_API int chWholeLetters(const char* text, int count);
