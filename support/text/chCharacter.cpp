#include "support/text/chCharacter.h"

namespace {

// Bytes that a letter beginning with `lead` should have.
int expectedLength(char lead)
{
    const unsigned char byte = static_cast<unsigned char>(lead);
    if (byte >= 0xF0)
        return 4;
    return byte >= 0xE0 ? 3 : 2;
}

// The lead byte whose letter reaches over the end of the first `count` bytes, or `count`.
int openLetter(const char* text, int count)
{
    for (int back = 1; back <= 3 && back <= count; ++back) {
        const char byte = text[count - back];
        if (chIsTrailbyte(byte))
            continue;
        return chIsLeadbyte(byte) && expectedLength(byte) > back ? count - back : count;
    }
    return count;
}

} // namespace

bool chIsLeadbyte(char byte)
{
    const unsigned char code = static_cast<unsigned char>(byte);
    return code >= 0xC2 && code <= 0xF4;
}

bool chIsTrailbyte(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool chIsWhiteSpace(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

char chUpper(char byte)
{
    return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
}

int chLetterLength(const char* text)
{
    if (*text == 0)
        return 0;
    if (!chIsLeadbyte(*text))
        return 1;
    int length = 1;
    while (length < expectedLength(*text) && chIsTrailbyte(text[length]))
        ++length;
    return length;
}

int chLetterStart(const char* text, int index)
{
    return chIsTrailbyte(text[index]) ? openLetter(text, index) : index;
}

int chLetterEnd(const char* text, int index)
{
    const int start = chLetterStart(text, index);
    return start == index ? index : start + chLetterLength(text + start);
}

int chWholeLetters(const char* text, int count)
{
    return openLetter(text, count);
}
