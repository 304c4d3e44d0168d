#pragma once
// The keys of an encrypted call, as descriptions carry them (RFC 4568). Nothing here writes a key to a log.
#include <QByteArray>
#include <cstring>
#include <functional>

// Both are AES in counter mode with a key of 128 bits; they differ in how long a packet's seal is.
enum class CRYPTO_SUITE { NONE, AES_SHA1_80, AES_SHA1_32 };

struct tagCrypto
{
    int nTag = 0; // names the line in offer and answer; 1 to 999999999
    CRYPTO_SUITE eSuite = CRYPTO_SUITE::NONE;
    QByteArray key;  // KEY_BYTES: the key and its salt
    QByteArray mark; // each packet that is sealed with it bears these bytes (MKI); empty: none
};

namespace callCrypto {

enum : int { KEY_BYTES = 30, MARK_BYTES_MAX = 128 };

// So many bytes that nobody can guess.
using KeySource = std::function<QByteArray(int bytes)>;
QByteArray randomBytes(int bytes);
template <typename Number>
Number randomNumber()
{
    Number number;
    memcpy(&number, randomBytes(sizeof number).constData(), sizeof number);
    return number;
}

// The value of a=crypto; false when it names another suite, or asks for what is not done here: several keys,
// packets that are not encrypted.
bool read(const QByteArray& value, tagCrypto& crypto);
// Of a key without a mark.
QByteArray write(const tagCrypto& crypto);

} // namespace callCrypto
