// What servers tell of messages, extensions and lists, bodies of calls, and the list of names. The first byte
// chooses; a zero is between two notes of a subscription. Whatever they hold, the bounds are kept, and what
// names a call can stand in a header.
#include "sip/hostsText.h"
#include "sip/memberBook.h"
#include "sip/messageSummary.h"
#include "sip/sdpBody.h"
#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

void demand(bool holds)
{
    if (!holds)
        abort();
}

void demandLine(const std::string& text)
{
    demand(text.size() < SIP_TARGET_SIZE);
    demand(std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= 0x20 || byte >= 0x7f || c == ';';
    }));
}

void demandState(const ExtensionState& state)
{
    demand(state.lamp() <= SIP_LAMP_BUSY);
    const tagDialog* dialog = state.ringing();
    demand(!dialog || state.lamp() == SIP_LAMP_RINGING);
    if (!dialog)
        return;
    demandLine(dialog->callId);
    demandLine(dialog->localTag);
    demandLine(dialog->remoteTag);
    demand(dialog->target.find_first_of("\r\n <>\"?") == std::string::npos);
    demand(dialog->identity.find_first_of("\r\n <>\"?") == std::string::npos);
}

void readSummary(const std::string& note)
{
    tagMessageCounts counts = {1, 2};
    const bool isSound = messageSummary::read(note.data(), note.size(), counts);
    demand(isSound || (counts.nNew == 1 && counts.nOld == 2));
    demand(counts.nNew <= SIP_MESSAGES_MAX && counts.nOld <= SIP_MESSAGES_MAX);
}

void readNotes(const std::string& notes, unsigned kind)
{
    ExtensionState state;
    MemberBook book;
    for (size_t at = 0; at < notes.size();) {
        const size_t end = std::min(notes.find('\0', at), notes.size());
        const std::string note = notes.substr(at, end - at);
        at = end + 1;
        if (kind == 1) {
            state.take(note.data(), note.size());
            demandState(state);
            continue;
        }
        book.take("multipart/related;boundary=b", note.data(), note.size());
        demand(book.members().size() <= SIP_MEMBERS_MAX);
        for (const tagListMember& member : book.members())
            demandState(member.state);
    }
}

std::string takeLine(std::string& text)
{
    const size_t end = std::min(text.find('\n'), text.size());
    const std::string line = text.substr(0, end);
    text.erase(0, end + 1);
    return line;
}

void readBody(const std::string& body, const std::string& type, const std::string& disposition)
{
    constexpr size_t kMoreMax = 2; // the end of the last line
    tagBodyPart whole;
    bodyParts::setType(type, whole);
    bodyParts::setDisposition(disposition, whole);
    whole.bytes = body.data();
    whole.nSize = body.size();
    const tagSdpBody read = sdpBody::read(whole);
    demand(read.sdp.size() <= body.size() + kMoreMax);
}

void readHosts(const std::string& hosts, const std::string& name)
{
    const std::vector<std::string> all = hostsText::addressesOf(hosts, name);
    demand(all.size() <= size_t(hostsText::MAX_ADDRESSES));
    // Of a list that was cut between lines there are as many or fewer.
    const std::string part = hostsText::wholeLines(hosts, hosts.size() / 2);
    demand(part.size() <= hosts.size() / 2 && hosts.compare(0, part.size(), part) == 0);
    const std::vector<std::string> some = hostsText::addressesOf(part, name);
    demand(some.size() <= all.size() && std::equal(some.begin(), some.end(), all.begin()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    if (size == 0)
        return 0;
    std::string notes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] == 0) {
        readSummary(notes);
    } else if (data[0] == 3) {
        readBody(notes, "multipart/mixed;boundary=b", "");
    } else if (data[0] == 4) {
        const std::string type = takeLine(notes);
        const std::string disposition = takeLine(notes);
        readBody(notes, type, disposition);
    } else if (data[0] == 5) {
        const std::string name = takeLine(notes);
        readHosts(notes, name);
    } else {
        readNotes(notes, data[0]);
    }
    return 0;
}
