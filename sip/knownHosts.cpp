#include "sip/knownHosts.h"
#include "sip/hostsText.h"
#include "sip/sipStack.h"
#include "support/file/placeLook.h"
#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <dlfcn.h>
#include <sofia-resolv/sres_record.h>

// Its own header is none for this language.
extern "C" {
sres_cache* sres_cache_new(int size);
sres_record_t* sres_cache_alloc_record(sres_cache* cache, const sres_record_t* like, size_t further);
sres_record_t** sres_cache_copy_answers(sres_cache* cache, sres_record_t** answers);
}

namespace {

constexpr const char* kHosts = "/etc/hosts";
constexpr size_t kMost = 256 << 10; // it is read for each name

// Of a name that the machine knows, those of one kind; null where it does not know the name.
sres_record_t** answersOf(uint16_t type, const char* name)
{
    const std::vector<std::string> addresses =
        name ? knownHosts::addressesOf(name) : std::vector<std::string>();
    if (addresses.empty() || !knownHosts::cache())
        return nullptr;
    std::vector<sres_record_t*> records;
    std::string ownName = name;
    for (const std::string& address : addresses) {
        sres_record_t record;
        memset(&record, 0, sizeof record);
        record.sr_record->r_name = ownName.data();
        record.sr_record->r_type = type;
        record.sr_record->r_class = sres_class_in;
        record.sr_record->r_size = type == sres_type_a ? sizeof(sres_a_record_t) : sizeof(sres_aaaa_record_t);
        const bool isOfType = type == sres_type_a
                                  ? inet_pton(AF_INET, address.c_str(), &record.sr_a->a_addr) == 1
                                  : inet_pton(AF_INET6, address.c_str(), &record.sr_aaaa->aaaa_addr) == 1;
        sres_record_t* own = isOfType ? sres_cache_alloc_record(knownHosts::cache(), &record, 0) : nullptr;
        if (own)
            records.push_back(own);
    }
    records.push_back(nullptr);
    return sres_cache_copy_answers(knownHosts::cache(), records.data());
}

} // namespace

std::vector<std::string> knownHosts::addressesOf(const std::string& name)
{
    return hostsText::addressesOf(hostsText::wholeLines(placeText(kHosts, kMost + 1), kMost), name);
}

sres_cache* knownHosts::cache()
{
    static sres_cache* const only = sres_cache_new(0);
    return only;
}

// The stack asks here before it asks a name server. Its function is replaced by itself, with what the machine
// knows before it.
extern "C" __attribute__((visibility("default"))) sres_record_t**
sres_cached_answers(sres_resolver_t* resolver, uint16_t type, char const* name)
{
    using Reader = sres_record_t** (*)(sres_resolver_t*, uint16_t, char const*);
    static const auto read = reinterpret_cast<Reader>(dlsym(RTLD_NEXT, "sres_cached_answers"));
    const bool isAddress = type == sres_type_a || type == sres_type_aaaa;
    sres_record_t** known = isAddress ? answersOf(type, name) : nullptr;
    return known ? known : read(resolver, type, name);
}
