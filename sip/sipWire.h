#pragma once
// The records of sipRecords.h in a stream of bytes. Nothing is read beyond what is there, and a record is
// handed out only when all its fields are what sipRecords.h says they are.
#include "sip/sipRecords.h"
#include <cstddef>
#include <string>
#include <vector>

namespace sipWire {

enum class TAKEN {
    RECORD,    // one was read
    NEED_MORE, // what is there is the start of one
    BAD        // no peer of ours writes this: the stream is of no use any more
};

// Bytes of a record of that kind; 0 for an unknown kind.
size_t sizeOf(uint32_t kind);
// Whether size bytes are one whole record that is sound.
bool isSound(const void* record, size_t size);

// Puts text into a field: shortened at the end of a character, without control characters unless isSdp.
void setText(char* field, size_t size, const std::string& text, bool isSdp = false);
template <size_t size>
void setText(char (&field)[size], const std::string& text)
{
    setText(field, size, text, size == SIP_SDP_SIZE);
}

// A record of a kind, all its fields zero.
template <typename Record>
Record make(SIP_RECORD kind, uint32_t id)
{
    Record record = {};
    tagSipHead& head = *reinterpret_cast<tagSipHead*>(&record);
    head.nLength = sizeof record;
    head.eKind = kind;
    head.nId = id;
    return record;
}

class Reader
{
public:
    void add(const void* bytes, size_t size);
    // Of the oldest record; valid until the next call.
    TAKEN take();
    const tagSipHead& head() const { return *reinterpret_cast<const tagSipHead*>(m_record.data()); }
    template <typename Record>
    const Record& as() const
    {
        return *reinterpret_cast<const Record*>(m_record.data());
    }
    // Bytes that wait.
    size_t size() const { return m_bytes.size(); }

private:
    std::vector<char> m_bytes;
    std::vector<uint32_t> m_record; // aligned as its fields
};

} // namespace sipWire
