#pragma once
// Where the phones of each user are, until their time is over.
#include "registrar/pbxStack.h"
#include <map>
#include <string>
#include <vector>

class ContactBook
{
public:
    enum : size_t { MAX_CONTACTS = 10, MAX_ADDRESS = 512 }; // of a user
    enum : long { LEAST_SECONDS = 60, USUAL_SECONDS = 120, MOST_SECONDS = 3600 };

    // own: this exchange, which is nobody's contact; most: the seconds that a phone is granted.
    ContactBook(std::string own, long most) : m_own(std::move(own)), m_nMost(most) {}

    // Whole or not at all; the status for the phone.
    int update(const std::string& user, const sip_t& request, long now);
    // Header values, each with the rest of its time.
    std::vector<std::string> listed(const std::string& user, long now) const;
    std::vector<std::string> addresses(const std::string& user) const;
    // One of his phones is at that numeric address.
    bool isAt(const std::string& user, const std::string& host) const;
    // Whose phone that address is; empty for nobody's.
    std::string ownerOf(const url_t* url) const;
    // Forgets whose time is over; the users that have no phone any more.
    std::vector<std::string> sweep(long now);

private:
    struct tagContact
    {
        std::string address;
        std::string name; // the user in it
        std::string place;
        std::string callId;
        uint32_t nSequence = 0;
        long nEnds = 0;
    };
    using Contacts = std::vector<tagContact>;

    long secondsOf(const sip_t& request, const sip_contact_t& contact) const;
    int change(Contacts& contacts, const sip_t& request, const sip_contact_t& contact, long now) const;

    const std::string m_own;
    const long m_nMost;
    std::map<std::string, Contacts> m_contacts;
};
