#include "registrar/contactBook.h"
#include "registrar/pbxText.h"
#include <algorithm>
#include <cstdlib>

long ContactBook::secondsOf(const sip_t& request, const sip_contact_t& contact) const
{
    if (contact.m_expires)
        return std::min(strtol(contact.m_expires, nullptr, 10), m_nMost);
    return request.sip_expires ? std::min(long(request.sip_expires->ex_delta), m_nMost) : m_nMost;
}

int ContactBook::update(const std::string& user, const sip_t& request, long now)
{
    Contacts contacts = m_contacts[user];
    for (const sip_contact_t* contact = request.sip_contact; contact; contact = contact->m_next) {
        if (contact->m_url->url_type == url_any) {
            const bool isAlone = contact == request.sip_contact && !contact->m_next;
            if (!isAlone || !request.sip_expires || request.sip_expires->ex_delta != 0)
                return 400;
            contacts.clear();
            break;
        }
        const int status = change(contacts, request, *contact, now);
        if (status != 200)
            return status;
    }
    m_contacts[user] = contacts;
    return 200;
}

int ContactBook::change(Contacts& contacts, const sip_t& request, const sip_contact_t& contact,
                        long now) const
{
    tagContact fresh;
    fresh.address = pbxText::address(contact.m_url);
    fresh.name = pbxText::user(contact.m_url);
    fresh.place = pbxText::place(contact.m_url);
    fresh.callId = pbxText::of(request.sip_call_id->i_id);
    fresh.nSequence = request.sip_cseq->cs_seq;
    const long seconds = secondsOf(request, contact);
    if (fresh.address.empty() || fresh.address.size() > MAX_ADDRESS || pbxText::isPlace(contact.m_url, m_own))
        return 400;
    if (seconds != 0 && seconds < LEAST_SECONDS)
        return 423;
    fresh.nEnds = now + seconds;
    const auto old = std::find_if(contacts.begin(), contacts.end(),
                                  [&](const tagContact& each) { return each.address == fresh.address; });
    // An older request that came later than a newer one.
    if (old != contacts.end() && old->callId == fresh.callId && old->nSequence >= fresh.nSequence)
        return 500;
    // A phone that started anew has another name at the same place.
    contacts.erase(std::remove_if(contacts.begin(), contacts.end(),
                                  [&](const tagContact& each) { return each.place == fresh.place; }),
                   contacts.end());
    if (seconds == 0)
        return 200;
    if (contacts.size() == MAX_CONTACTS)
        return 503;
    contacts.push_back(fresh);
    return 200;
}

std::vector<std::string> ContactBook::listed(const std::string& user, long now) const
{
    std::vector<std::string> all;
    const auto found = m_contacts.find(user);
    if (found == m_contacts.end())
        return all;
    for (const tagContact& contact : found->second)
        all.push_back("<" + contact.address + ">;expires=" + std::to_string(contact.nEnds - now));
    return all;
}

std::vector<std::string> ContactBook::addresses(const std::string& user) const
{
    std::vector<std::string> all;
    const auto found = m_contacts.find(user);
    if (found == m_contacts.end())
        return all;
    for (const tagContact& contact : found->second)
        all.push_back(contact.address);
    return all;
}

bool ContactBook::isAt(const std::string& user, const std::string& host) const
{
    const std::string start = (host.find(':') == std::string::npos ? host : "[" + host + "]") + ":";
    const auto found = m_contacts.find(user);
    return found != m_contacts.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [&](const tagContact& contact) { return contact.place.rfind(start, 0) == 0; });
}

std::string ContactBook::ownerOf(const url_t* url) const
{
    const std::string name = pbxText::user(url), place = pbxText::place(url);
    for (const auto& [user, contacts] : m_contacts) {
        for (const tagContact& contact : contacts) {
            if (contact.place == place && contact.name == name)
                return user;
        }
    }
    return "";
}

std::vector<std::string> ContactBook::sweep(long now)
{
    std::vector<std::string> gone;
    for (auto& [user, contacts] : m_contacts) {
        const size_t before = contacts.size();
        contacts.erase(std::remove_if(contacts.begin(), contacts.end(),
                                      [&](const tagContact& each) { return each.nEnds <= now; }),
                       contacts.end());
        if (before > 0 && contacts.empty())
            gone.push_back(user);
    }
    return gone;
}
