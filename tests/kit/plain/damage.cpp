#include "tests/kit/plain/damage.h"
#include <QFile>
#include <cctype>
#include <cstdio>
#include <iterator>

namespace {

constexpr int kCount = 2000;
constexpr int kLongCount = 100000;
constexpr int kHarms = 6;
constexpr int kMostFlips = 8;
constexpr int kMostTimes = 6;
constexpr int kHugeBytes = 80 << 10; // more than an answer or a list may have
constexpr int kSeldom = 40;          // one of so many
constexpr int kNowAndThen = 8;

const QByteArray kPieces[] = {"<x>",
                              "</x>",
                              "<x/>",
                              "<x a='1'/>",
                              "</",
                              "<",
                              ">",
                              "\"",
                              "'",
                              "=",
                              "&",
                              "&amp;",
                              "&lt;",
                              "&#10;",
                              "&#0;",
                              "&#x202e;",
                              "&#xd800;",
                              "&#99999999999;",
                              "&nobody;",
                              "<!--",
                              "-->",
                              "<![CDATA[",
                              "]]>",
                              "<?x?>",
                              "<!DOCTYPE a [<!ENTITY b 'cc'>]>",
                              QByteArray(1, '\0'),
                              QByteArray(3, '\0'),
                              "\xff",
                              "\xe2\x80\xae",
                              "\xc3",
                              "\xf0\x9f\x8c\xa7",
                              "\r\n\t"};

const QByteArray kNumbers[] = {"",
                               "0",
                               "-1",
                               "7",
                               "--7",
                               "+7",
                               "007",
                               "4.5",
                               "1e9",
                               "0x10",
                               "NaN",
                               "hot",
                               "12abc",
                               " 12 ",
                               "100000",
                               "100001",
                               "2147483647",
                               "2147483648",
                               "-2147483649",
                               "9223372036854775808",
                               "-99999999999999999999",
                               "\xd9\xa3"};

unsigned seed()
{
    return qEnvironmentVariableIsSet("HX_DAMAGE_SEED") ? qgetenv("HX_DAMAGE_SEED").toUInt()
                                                       : std::random_device()();
}

struct tagPlace
{
    qsizetype at = 0;
    qsizetype size = 0;
};

bool isDigit(char letter)
{
    return isdigit(static_cast<unsigned char>(letter));
}

// All of them; a number of a reference to a letter is none.
QList<tagPlace> numbersOf(const QByteArray& text)
{
    QList<tagPlace> numbers;
    for (qsizetype at = 0; at < text.size(); ++at) {
        qsizetype size = 0;
        while (at + size < text.size() && isDigit(text[at + size]))
            ++size;
        if (size > 0 && (at == 0 || text[at - 1] != '#'))
            numbers.append({at, size});
        at += size;
    }
    return numbers;
}

// Where its elements begin.
QList<qsizetype> tagsOf(const QByteArray& text)
{
    QList<qsizetype> tags;
    for (qsizetype at = text.indexOf('<'); at >= 0; at = text.indexOf('<', at + 1)) {
        const char next = at + 1 < text.size() ? text[at + 1] : '/';
        if (next != '/' && next != '!' && next != '?')
            tags.append(at);
    }
    return tags;
}

// The element of the tag that begins there, as far as it is one.
tagPlace elementAt(const QByteArray& text, qsizetype from)
{
    int depth = 0;
    for (qsizetype at = from; at >= 0; at = text.indexOf('<', at + 1)) {
        const qsizetype end = text.indexOf('>', at);
        if (end < 0)
            break;
        const bool isEnd = text[at + 1] == '/';
        const bool isEmpty = text[end - 1] == '/';
        depth += isEnd ? -1 : !isEmpty;
        if (depth <= 0)
            return {from, end + 1 - from};
    }
    return {from, text.size() - from};
}

} // namespace

kit::Damage::Damage()
{
    const unsigned first = seed();
    printf("HX_DAMAGE_SEED=%u\n", first);
    m_random.seed(first);
}

int kit::Damage::count()
{
    return qEnvironmentVariableIsSet("HX_LONG") ? kLongCount : kCount;
}

kit::Damage::tagHarmed kit::Damage::harmed(const QByteArray& whole)
{
    tagHarmed harmed{whole, {}};
    using Act = void (Damage::*)(QByteArray&);
    const Act acts[kHarms] = {&Damage::cut,        &Damage::flip,   &Damage::leaveOut,
                              &Damage::doublePart, &Damage::insert, &Damage::changeNumber};
    for (int left = draw(4) == 0 ? 1 + draw(3) : 1; left > 0; --left) {
        const int harm = draw(kHarms);
        (this->*acts[harm])(harmed.text);
        harmed.harms.append(Harm(harm));
    }
    return harmed;
}

bool kit::Damage::write(const QString& file, const QByteArray& text)
{
    QFile place(file);
    return place.open(QIODevice::ReadWrite) && place.resize(text.size()) && place.write(text) == text.size();
}

void kit::Damage::cut(QByteArray& text)
{
    text.truncate(text.isEmpty() ? 0 : draw(int(text.size())));
}

void kit::Damage::flip(QByteArray& text)
{
    for (int flips = text.isEmpty() ? 0 : 1 + draw(kMostFlips); flips > 0; --flips) {
        char& byte = text[draw(int(text.size()))];
        byte = draw(2) ? char(byte ^ (1 << draw(8))) : char(draw(256));
    }
}

void kit::Damage::leaveOut(QByteArray& text)
{
    const QList<qsizetype> tags = tagsOf(text);
    if (tags.isEmpty())
        return;
    const tagPlace element = elementAt(text, tags[draw(int(tags.size()))]);
    text.remove(element.at, element.size);
}

// A whole element, or whatever stands there.
void kit::Damage::doublePart(QByteArray& text)
{
    const QList<qsizetype> tags = tagsOf(text);
    if (tags.isEmpty())
        return;
    const qsizetype from = draw(int(text.size()));
    const tagPlace place = draw(2) ? elementAt(text, tags[draw(int(tags.size()))])
                                   : tagPlace{from, 1 + draw(int(text.size() - from))};
    const QByteArray part = text.mid(place.at, place.size);
    const bool isHuge = draw(kSeldom) == 0;
    text.insert(place.at, part.repeated(isHuge ? kHugeBytes / part.size() + 1 : 1 + draw(kMostTimes)));
}

void kit::Damage::insert(QByteArray& text)
{
    for (int pieces = 1 + draw(2); pieces > 0; --pieces)
        text.insert(draw(int(text.size()) + 1), kPieces[draw(int(std::size(kPieces)))]);
}

void kit::Damage::changeNumber(QByteArray& text)
{
    const QList<tagPlace> numbers = numbersOf(text);
    if (numbers.isEmpty())
        return;
    const tagPlace place = numbers[draw(int(numbers.size()))];
    const bool isLong = draw(kNowAndThen) == 0;
    text.replace(place.at, place.size,
                 isLong ? QByteArray(1 + draw(3000), '9') : kNumbers[draw(int(std::size(kNumbers)))]);
}
