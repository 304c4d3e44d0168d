#pragma once
// The extensions that a server has put on a list, and what is known of each, by the documents of one
// subscription to it (RFC 4662).
#include "sip/extensionState.h"
#include <string>
#include <vector>

struct tagListMember
{
    std::string uri;
    std::string number; // as it is dialled
    std::string name;
    std::string instance;
    ExtensionState state;
};

class MemberBook
{
public:
    // A body with the list and the documents of members. False when the whole should be asked for: a damaged
    // list is left as it was, and nothing is known of its members.
    bool take(const std::string& contentType, const char* bytes, size_t size);
    // Another subscription: what is known holds until its first document.
    void begin();
    // Nothing is known of the members.
    void lose();
    void forget();
    const std::vector<tagListMember>& members() const { return m_members; }

private:
    tagListMember& memberOf(std::vector<tagListMember>& members, const std::string& uri) const;

    StateVersion m_version;
    std::vector<tagListMember> m_members;
};
