#include "support/text/chFormat.h"

#include "support/text/chCharacter.h"
#include "support/text/nuxError.h"

#include <climits>
#include <clocale>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <locale.h>

namespace {

// A copy of the caller's arguments to walk through; a structure, so that it can be handed on.
struct argumentWalk
{
    explicit argumentWalk(void* args) { va_copy(list, *static_cast<va_list*>(args)); }
    ~argumentWalk() { va_end(list); }
    argumentWalk(const argumentWalk&) = delete;
    argumentWalk& operator=(const argumentWalk&) = delete;

    va_list list;
};

enum class argumentSize { Usual, Byte, Short, Long, Int64 };

constexpr argumentSize sizeOfMemory = sizeof(size_t) == 8 ? argumentSize::Int64 : argumentSize::Usual;

// Flags of a conversion, in the order in which `flagLetters` names them.
enum formatFlag : unsigned { FLAG_HASH = 1, FLAG_LEFT = 2, FLAG_PLUS = 4, FLAG_ZERO = 8, FLAG_BLANK = 16 };
constexpr char flagLetters[] = "#-+0 ";

unsigned flagOf(char letter)
{
    switch (letter) {
    case '#':
        return FLAG_HASH;
    case '-':
        return FLAG_LEFT;
    case '+':
        return FLAG_PLUS;
    case '0':
        return FLAG_ZERO;
    case ' ':
        return FLAG_BLANK;
    default:
        return 0;
    }
}

// One conversion of a format.
struct formatItem
{
    const char* begin; // at the per cent sign
    const char* end;   // behind the conversion
    unsigned flags = 0;
    int width = 0;
    int precision = -1; // -1 when there is none
    argumentSize size = argumentSize::Usual;
    char conversion = 0;

    bool IsWide() const
    {
        const bool capital = conversion == 'S' || conversion == 'C';
        return capital ? size != argumentSize::Short : size == argumentSize::Long;
    }
};

int addBounded(int left, int right)
{
    return right > INT_MAX - left ? INT_MAX : left + right;
}

int larger(int left, int right)
{
    return left > right ? left : right;
}

int boundedLength(size_t length)
{
    return length > INT_MAX ? INT_MAX : static_cast<int>(length);
}

int readNumber(const char*& cursor)
{
    long long number = 0;
    for (; *cursor >= '0' && *cursor <= '9'; ++cursor)
        number = number > INT_MAX ? number : number * 10 + (*cursor - '0');
    return number > INT_MAX ? INT_MAX : static_cast<int>(number);
}

int limited(int field)
{
    return field > chFormatFieldLimit ? chFormatFieldLimit : field;
}

void readWidth(const char*& cursor, formatItem& item, argumentWalk& args)
{
    if (*cursor == '*') {
        ++cursor;
        item.width = va_arg(args.list, int);
        if (item.width < 0) {
            item.flags |= FLAG_LEFT;
            item.width = item.width == INT_MIN ? INT_MAX : -item.width;
        }
    } else {
        item.width = readNumber(cursor);
    }
    item.width = limited(item.width);
}

void readPrecision(const char*& cursor, formatItem& item, argumentWalk& args)
{
    if (*cursor != '.')
        return;
    ++cursor;
    if (*cursor == '*') {
        ++cursor;
        item.precision = va_arg(args.list, int);
        if (item.precision < 0)
            item.precision = -1;
    } else {
        item.precision = readNumber(cursor);
    }
}

void readSize(const char*& cursor, formatItem& item)
{
    switch (*cursor) {
    case 'I':
        if (cursor[1] != '6' || cursor[2] != '4')
            return;
        cursor += 3;
        item.size = argumentSize::Int64;
        return;
    case 'h':
    case 'l': {
        const bool twice = cursor[1] == *cursor;
        if (*cursor == 'h')
            item.size = twice ? argumentSize::Byte : argumentSize::Short;
        else
            item.size = twice ? argumentSize::Int64 : argumentSize::Long;
        cursor += twice ? 2 : 1;
        break;
    }
    case 'z':
    case 't':
        item.size = sizeOfMemory;
        ++cursor;
        break;
    case 'j':
        item.size = argumentSize::Int64;
        ++cursor;
        break;
    case 'F':
    case 'L':
    case 'N':
        ++cursor;
        break;
    default:
        break;
    }
}

// Reads the conversion whose per cent sign is at `cursor` and leaves `cursor` behind it.
formatItem readItem(const char*& cursor, argumentWalk& args)
{
    formatItem item;
    item.begin = cursor++;
    while (const unsigned flag = flagOf(*cursor)) {
        item.flags |= flag;
        ++cursor;
    }
    readWidth(cursor, item, args);
    readPrecision(cursor, item, args);
    readSize(cursor, item);
    item.conversion = *cursor;
    cursor += static_cast<unsigned char>(*cursor) < 0x80 ? *cursor != 0 : chLetterLength(cursor);
    item.end = cursor;
    if (item.conversion != 's' && item.conversion != 'S')
        item.precision = limited(item.precision);
    return item;
}

long long takeSigned(const formatItem& item, argumentWalk& args)
{
    switch (item.size) {
    case argumentSize::Int64:
        return va_arg(args.list, long long);
    case argumentSize::Long:
        return va_arg(args.list, long);
    case argumentSize::Short:
        return static_cast<short>(va_arg(args.list, int));
    case argumentSize::Byte:
        return static_cast<signed char>(va_arg(args.list, int));
    default:
        return va_arg(args.list, int);
    }
}

unsigned long long takeUnsigned(const formatItem& item, argumentWalk& args)
{
    const unsigned long long value = static_cast<unsigned long long>(takeSigned(item, args));
    switch (item.size) {
    case argumentSize::Int64:
        return value;
    case argumentSize::Long:
        return static_cast<unsigned long>(value);
    case argumentSize::Short:
        return static_cast<unsigned short>(value);
    case argumentSize::Byte:
        return static_cast<unsigned char>(value);
    default:
        return static_cast<unsigned>(value);
    }
}

// The UTF-8 bytes of a wide character; what is no character becomes the replacement character.
int encodeWide(wchar_t character, char* bytes)
{
    uint32_t code = static_cast<uint32_t>(character);
    if (code > 0x10FFFF || (code >= 0xD800 && code < 0xE000))
        code = 0xFFFD;
    const int length = code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
    if (length == 1) {
        bytes[0] = static_cast<char>(code);
        return 1;
    }
    for (int i = length - 1; i > 0; --i, code >>= 6)
        bytes[i] = static_cast<char>(0x80 | (code & 0x3F));
    bytes[0] = static_cast<char>((0xF00 >> length) | code);
    return length;
}

// ---- the measuring pass ----

class surveyor
{
public:
    surveyor(void* args, const char* rangeBegin, const char* rangeEnd)
        : m_args(args), m_rangeBegin(rangeBegin), m_rangeEnd(rangeEnd)
    {
    }

    chFormatSurvey Survey(const char* fmt)
    {
        NoteText(fmt);
        const char* cursor = fmt;
        while (true) {
            const char* literal = cursor;
            cursor = strchrnul(cursor, '%');
            Add(boundedLength(static_cast<size_t>(cursor - literal)));
            if (*cursor == 0)
                return m_survey;
            if (cursor[1] == '%') {
                Add(1);
                cursor += 2;
            } else {
                MeasureItem(readItem(cursor, m_args));
            }
        }
    }

private:
    void Add(int bytes) { m_survey.nEstimate = addBounded(m_survey.nEstimate, bytes); }

    void NoteText(const char* text)
    {
        if (m_rangeBegin && text >= m_rangeBegin && text < m_rangeEnd)
            m_survey.bReadsRange = true;
    }

    void MeasureItem(const formatItem& item)
    {
        if (item.flags & FLAG_HASH)
            Add(2);
        const int fields = addBounded(item.width, larger(item.precision, 0));
        switch (item.conversion) {
        case 'c':
        case 'C':
            MeasureCharacter(item);
            break;
        case 's':
        case 'S':
            Add(larger(MeasureText(item), item.width));
            break;
        case 'd':
        case 'i':
        case 'u':
        case 'o':
        case 'x':
        case 'X':
            takeSigned(item, m_args);
            Add(larger(fields, 32));
            break;
        case 'e':
        case 'g':
        case 'G':
            SkipDecimal();
            Add(larger(fields, 128));
            break;
        case 'f':
            SkipDecimal();
            Add(larger(larger(item.precision, 0) + 312, 128));
            break;
        case 'p':
            va_arg(m_args.list, void*);
            Add(larger(fields, 32));
            break;
        case 'n':
            va_arg(m_args.list, void*);
            break;
        default:
            MeasureOther(item);
            break;
        }
    }

    void MeasureCharacter(const formatItem& item)
    {
        const int character = va_arg(m_args.list, int);
        char bytes[4];
        const int length = item.IsWide() ? encodeWide(static_cast<wchar_t>(character), bytes) : 1;
        Add(larger(larger(length, 2), item.width));
    }

    int MeasureText(const formatItem& item)
    {
        const void* text = va_arg(m_args.list, const void*);
        const int length = !text           ? 6
                           : item.IsWide() ? MeasureWide(static_cast<const wchar_t*>(text), item.precision)
                                           : MeasureNarrow(static_cast<const char*>(text), item.precision);
        return item.precision >= 0 && item.precision < larger(length, 1) ? item.precision : larger(length, 1);
    }

    int MeasureNarrow(const char* text, int precision)
    {
        NoteText(text);
        return boundedLength(precision < 0 ? strlen(text) : strnlen(text, static_cast<size_t>(precision)));
    }

    // Two bytes a character, and more where its letter has more.
    static int MeasureWide(const wchar_t* text, int precision)
    {
        char bytes[4];
        int length = 0;
        for (; (precision < 0 || length < precision) && *text != 0; ++text)
            length = addBounded(length, larger(2, encodeWide(*text, bytes)));
        return length;
    }

    void SkipDecimal()
    {
        va_arg(m_args.list, double);
        m_survey.bDecimals = true;
    }

    // The C formatter knows three more numbers; anything else is printed as it stands in the format.
    void MeasureOther(const formatItem& item)
    {
        NUX_ASSERT(false, "unknown conversion in a format");
        if (item.conversion != 0 && strchr("EaA", item.conversion))
            SkipDecimal();
    }

    argumentWalk m_args;
    const char* m_rangeBegin;
    const char* m_rangeEnd;
    chFormatSurvey m_survey{0, false, false};
};

// ---- the printing pass ----

class printer
{
public:
    printer(char* buffer, int size, void* args) : m_buffer(buffer), m_size(size), m_args(args) {}

    // The bytes that all of it needs.
    int Print(const char* fmt)
    {
        const char* cursor = fmt;
        while (*cursor != 0) {
            const char* literal = cursor;
            cursor = strchrnul(cursor, '%');
            Add(literal, boundedLength(static_cast<size_t>(cursor - literal)));
            if (*cursor == '%' && cursor[1] == '%') {
                Add("%", 1);
                cursor += 2;
            } else if (*cursor == '%') {
                PrintItem(readItem(cursor, m_args));
            }
        }
        m_buffer[m_needed < m_size ? m_needed : m_size - 1] = 0;
        return m_needed;
    }

private:
    int Room() const { return m_needed < m_size ? m_size - m_needed : 0; }

    void Add(const char* bytes, int count)
    {
        const int copied = count < Room() ? count : Room();
        if (copied > 0)
            memcpy(m_buffer + m_needed, bytes, static_cast<size_t>(copied));
        m_needed = addBounded(m_needed, count);
    }

    void Fill(char byte, int count)
    {
        for (; count > 0; --count)
            Add(&byte, 1);
    }

    void PrintItem(const formatItem& item)
    {
        switch (item.conversion) {
        case 'c':
        case 'C':
            PrintCharacter(item);
            break;
        case 's':
        case 'S':
            PrintText(item);
            break;
        case 'd':
        case 'i':
            PrintSigned(item, takeSigned(item, m_args));
            break;
        case 'u':
            PrintUnsigned(item, takeUnsigned(item, m_args));
            break;
        case 'o':
        case 'x':
        case 'X':
            PrintWith(item, "ll", takeUnsigned(item, m_args));
            break;
        case 'e':
        case 'g':
        case 'G':
        case 'f':
        case 'E':
        case 'a':
        case 'A':
            PrintWith(item, "", va_arg(m_args.list, double));
            break;
        case 'p':
            PrintWith(item, "", va_arg(m_args.list, void*));
            break;
        case 'n':
            va_arg(m_args.list, void*);
            break;
        default:
            Add(item.begin, boundedLength(static_cast<size_t>(item.end - item.begin)));
            break;
        }
    }

    // Prints by the C formatter.
    template <class VALUE>
    void PrintWith(const formatItem& item, const char* size, VALUE value)
    {
        char one[16] = "%";
        char* end = one + 1;
        for (int i = 0; flagLetters[i]; ++i)
            if (item.flags & (1u << i))
                *end++ = flagLetters[i];
        end = stpcpy(stpcpy(end, "*.*"), size);
        *end = item.conversion;
        char* place = Room() > 0 ? m_buffer + m_needed : nullptr;
        const int printed =
            snprintf(place, static_cast<size_t>(Room()), one, item.width, item.precision, value);
        m_needed = addBounded(m_needed, larger(printed, 0));
    }

    void PrintSigned(const formatItem& item, long long value)
    {
        if (item.precision >= 0 || (item.flags & ~(FLAG_LEFT | FLAG_ZERO)))
            PrintWith(item, "ll", value);
        else
            PrintDecimal(item, value < 0,
                         value < 0 ? 0 - static_cast<unsigned long long>(value)
                                   : static_cast<unsigned long long>(value));
    }

    void PrintUnsigned(const formatItem& item, unsigned long long value)
    {
        if (item.precision >= 0 || (item.flags & ~(FLAG_LEFT | FLAG_ZERO)))
            PrintWith(item, "ll", value);
        else
            PrintDecimal(item, false, value);
    }

    // Most numbers of the phone are written like this; the C formatter takes three times as long.
    void PrintDecimal(const formatItem& item, bool negative, unsigned long long value)
    {
        char digits[24];
        char* const end = digits + sizeof(digits);
        char* begin = end;
        do {
            *--begin = static_cast<char>('0' + value % 10);
            value /= 10;
        } while (value != 0);
        if (item.flags == FLAG_ZERO && item.width > static_cast<int>(end - begin) + negative) {
            Add("-", negative);
            Fill('0', item.width - negative - static_cast<int>(end - begin));
            Add(begin, static_cast<int>(end - begin));
            return;
        }
        if (negative)
            *--begin = '-';
        PrintPadded(item, begin, static_cast<int>(end - begin));
    }

    void PrintPadded(const formatItem& item, const char* bytes, int count)
    {
        const bool left = (item.flags & FLAG_LEFT) != 0;
        if (!left)
            Fill(' ', item.width - count);
        Add(bytes, count);
        if (left)
            Fill(' ', item.width - count);
    }

    // The terminator is no letter and prints nothing.
    void PrintCharacter(const formatItem& item)
    {
        const int character = va_arg(m_args.list, int);
        char bytes[4] = {static_cast<char>(character)};
        const int length = item.IsWide() ? encodeWide(static_cast<wchar_t>(character), bytes) : 1;
        PrintPadded(item, bytes, character == 0 ? 0 : length);
    }

    void PrintText(const formatItem& item)
    {
        const void* text = va_arg(m_args.list, const void*);
        if (!text)
            PrintNarrow(item, "(null)");
        else if (item.IsWide())
            PrintWide(item, static_cast<const wchar_t*>(text));
        else
            PrintNarrow(item, static_cast<const char*>(text));
    }

    void PrintNarrow(const formatItem& item, const char* text)
    {
        int length;
        if (item.precision < 0) {
            length = boundedLength(strlen(text));
        } else {
            length = static_cast<int>(strnlen(text, static_cast<size_t>(item.precision)));
            if (length == item.precision)
                length = chWholeLetters(text, length);
        }
        PrintPadded(item, text, length);
    }

    void PrintWide(const formatItem& item, const wchar_t* text)
    {
        char bytes[4];
        int length = 0;
        const wchar_t* end = text;
        for (; *end != 0; ++end) {
            const int letter = encodeWide(*end, bytes);
            if (item.precision >= 0 && addBounded(length, letter) > item.precision)
                break;
            length = addBounded(length, letter);
        }
        const bool left = (item.flags & FLAG_LEFT) != 0;
        if (!left)
            Fill(' ', item.width - length);
        for (; text != end; ++text)
            Add(bytes, encodeWide(*text, bytes));
        if (left)
            Fill(' ', item.width - length);
    }

    char* m_buffer;
    int m_size;
    argumentWalk m_args;
    int m_needed = 0;
};

// The desktop's language may have a decimal comma; texts and files of the phone never have.
class decimalPoint
{
public:
    explicit decimalPoint(bool needed)
    {
        static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
        if (needed && plain)
            m_before = uselocale(plain);
    }
    ~decimalPoint()
    {
        if (m_before)
            uselocale(m_before);
    }
    decimalPoint(const decimalPoint&) = delete;
    decimalPoint& operator=(const decimalPoint&) = delete;

private:
    locale_t m_before = nullptr;
};

} // namespace

chFormatSurvey chSurveyFormat(const char* fmt, void* args, const char* rangeBegin, const char* rangeEnd)
{
    return surveyor(args, rangeBegin, rangeEnd).Survey(fmt);
}

int chPrintSurveyed(char* buffer, int size, const char* fmt, void* args, const chFormatSurvey& survey)
{
    const decimalPoint point(survey.bDecimals);
    const int needed = printer(buffer, size, args).Print(fmt);
    if (needed >= size) {
        const int kept = chWholeLetters(buffer, size - 1);
        memset(buffer + kept, 0, static_cast<size_t>(size - kept));
    }
    return needed;
}

int chVsprintf(char* buffer, int size, const char* fmt, void* args)
{
    if (!NUX_ASSERT(buffer != nullptr && fmt != nullptr, "lpszText != NULL") || size < 1)
        return 0;
    const int needed = chPrintSurveyed(buffer, size, fmt, args, chSurveyFormat(fmt, args, nullptr, nullptr));
    return needed < size ? needed : static_cast<int>(strlen(buffer));
}
