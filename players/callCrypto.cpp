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
        if (name == suite.pName)
            return suite.eSuite;
    }
    return CRYPTO_SUITE::NONE;
}

// "inline:KEY", and how long the key may be used; anything more is a number of the key.
bool readKey(const QByteArray& text, QByteArray& key)
{
    const QList<QByteArray> parts = text.mid(qstrlen(kInline)).split('|');
    const bool isPlain = parts.size() == 1 || (parts.size() == 2 && !parts[1].contains(':'));
    if (!text.startsWith(kInline) || !isPlain)
        return false;
    const auto decoded = QByteArray::fromBase64Encoding(parts[0], QByteArray::AbortOnBase64DecodingErrors);
    key = *decoded;
    return bool(decoded) && key.size() == callCrypto::KEY_BYTES;
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
        if (!words[i].startsWith("WSH=")) // how many packets may come late; we look at all of them
            return false;
    }
    bool isNumber = false;
    tagCrypto found;
    found.nTag = words[0].toInt(&isNumber);
    found.eSuite = suiteOf(words[1]);
    if (!isNumber || found.nTag < 1 || found.nTag > kMaxTag || found.eSuite == CRYPTO_SUITE::NONE ||
        words[2].contains(';') || !readKey(words[2], found.key))
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
