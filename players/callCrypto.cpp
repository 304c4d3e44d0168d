#include "players/callCrypto.h"
#include <QList>
#include <sys/random.h>

namespace {

struct tagSuiteName
{
    CRYPTO_SUITE eSuite;
    const char* pName;
};
constexpr tagSuiteName kSuites[] = {{CRYPTO_SUITE::AES_SHA1_80, "AES_CM_128_HMAC_SHA1_80"},
                                    {CRYPTO_SUITE::AES_SHA1_32, "AES_CM_128_HMAC_SHA1_32"}};
constexpr int kMaxTag = 999999999;
const char* const kInline = "inline:";

CRYPTO_SUITE suiteOf(const QByteArray& name)
{
    for (const tagSuiteName& suite : kSuites) {
        if (qstricmp(name, suite.pName) == 0)
            return suite.eSuite;
    }
    return CRYPTO_SUITE::NONE;
}

// "1:4": the number of the key, and in how many bytes the packets say it.
bool readMark(const QByteArray& text, QByteArray& mark)
{
    const qsizetype colon = text.indexOf(':');
    bool isNumber = false, isSize = false;
    quint64 number = text.left(colon).toULongLong(&isNumber);
    const int size = text.mid(colon + 1).toInt(&isSize);
    if (!isNumber || !isSize || size < 1 || size > callCrypto::MARK_BYTES_MAX)
        return false;
    mark = QByteArray(size, 0);
    for (int i = size; i-- > 0; number >>= 8)
        mark[i] = char(number & 0xff);
    return number == 0;
}

// "inline:KEY|2^20|1:4": the key, how long it may be used, its mark; the latter two may be missing.
bool readKey(const QByteArray& text, tagCrypto& crypto)
{
    const qsizetype head = qsizetype(qstrlen(kInline));
    QList<QByteArray> parts = text.mid(head).split('|');
    if (text.left(head).toLower() != kInline)
        return false;
    if (parts.size() > 1 && parts.last().contains(':') && !readMark(parts.takeLast(), crypto.mark))
        return false;
    if (parts.size() > 2 || (parts.size() == 2 && parts[1].contains(':')))
        return false;
    const auto decoded = QByteArray::fromBase64Encoding(parts[0], QByteArray::AbortOnBase64DecodingErrors);
    crypto.key = *decoded;
    return bool(decoded) && crypto.key.size() == callCrypto::KEY_BYTES;
}

} // namespace

QByteArray callCrypto::randomBytes(int bytes)
{
    QByteArray random(bytes, 0);
    // Up to 256 bytes come whole once the system has begun.
    if (bytes > 256 || getrandom(random.data(), size_t(bytes), 0) != bytes)
        qFatal("the system gives no random bytes");
    return random;
}

bool callCrypto::read(const QByteArray& value, tagCrypto& crypto)
{
    const QList<QByteArray> words = value.simplified().split(' ');
    if (words.size() < 3)
        return false;
    for (qsizetype i = 3; i < words.size(); ++i) {
        // How many packets may come late, and we look at all of them; what nobody has to know.
        if (!words[i].toUpper().startsWith("WSH=") && !words[i].startsWith('-'))
            return false;
    }
    bool isNumber = false;
    tagCrypto found;
    found.nTag = words[0].toInt(&isNumber);
    found.eSuite = suiteOf(words[1]);
    if (!isNumber || found.nTag < 1 || found.nTag > kMaxTag || found.eSuite == CRYPTO_SUITE::NONE ||
        words[2].contains(';') || !readKey(words[2], found))
        return false;
    crypto = found;
    return true;
}

QByteArray callCrypto::write(const tagCrypto& crypto)
{
    QByteArray name;
    for (const tagSuiteName& suite : kSuites) {
        if (suite.eSuite == crypto.eSuite)
            name = suite.pName;
    }
    return QByteArray::number(crypto.nTag) + ' ' + name + ' ' + kInline + crypto.key.toBase64();
}
