#include "registrar/callBook.h"
#include "registrar/pbxText.h"
#include <algorithm>

bool CallBook::begin(tagSeenCall call, long now)
{
    const auto known = m_calls.find(call.callId);
    if (known != m_calls.end() ? known->second.eStep != CALL_STEP::OVER : !makeRoom())
        return false;
    const auto own = std::count_if(m_calls.begin(), m_calls.end(), [&](const auto& each) {
        return each.second.caller == call.caller && each.second.eStep != CALL_STEP::OVER;
    });
    if (size_t(own) >= MAX_OF_CALLER)
        return false;
    call.nNumber = ++m_nLast;
    call.eStep = CALL_STEP::TRYING;
    call.nSince = now;
    const std::string caller = call.caller;
    m_calls[call.callId] = std::move(call);
    m_changed(caller);
    return true;
}

// Of those that are over the oldest goes first.
bool CallBook::makeRoom()
{
    if (m_calls.size() < MAX_CALLS)
        return true;
    auto oldest = m_calls.end();
    for (auto it = m_calls.begin(); it != m_calls.end(); ++it) {
        const bool isOlder = oldest == m_calls.end() || it->second.nNumber < oldest->second.nNumber;
        if (it->second.eStep == CALL_STEP::OVER && isOlder)
            oldest = it;
    }
    if (oldest == m_calls.end())
        return false;
    m_calls.erase(oldest);
    return true;
}

void CallBook::ring(const std::string& callId, const std::string& toTag, long now)
{
    step(callId, CALL_STEP::RINGING, toTag, now);
}

void CallBook::talk(const std::string& callId, const std::string& toTag, const std::string& host, long now)
{
    const auto found = m_calls.find(callId);
    if (found != m_calls.end() && found->second.eStep < CALL_STEP::TALKING)
        found->second.calleeHost = host;
    step(callId, CALL_STEP::TALKING, toTag, now);
}

void CallBook::end(const std::string& callId, long now)
{
    step(callId, CALL_STEP::OVER, "", now);
}

// A call only goes forward.
void CallBook::step(const std::string& callId, CALL_STEP step, const std::string& toTag, long now)
{
    const auto found = m_calls.find(callId);
    if (found == m_calls.end() || found->second.eStep >= step)
        return;
    tagSeenCall& call = found->second;
    call.eStep = step;
    call.nSince = now;
    if (!toTag.empty())
        call.toTag = toTag;
    const std::string caller = call.caller, callee = call.callee;
    m_changed(caller);
    if (callee != caller)
        m_changed(callee);
}

bool CallBook::holds(const sip_t& request) const
{
    const auto found = m_calls.find(pbxText::of(request.sip_call_id->i_id));
    if (found == m_calls.end())
        return false;
    const std::string& tag = found->second.fromTag;
    return pbxText::of(request.sip_from->a_tag) == tag || pbxText::of(request.sip_to->a_tag) == tag;
}

const tagSeenCall* CallBook::find(const std::string& callId) const
{
    const auto found = m_calls.find(callId);
    return found == m_calls.end() ? nullptr : &found->second;
}

std::vector<const tagSeenCall*> CallBook::of(const std::string& user) const
{
    std::vector<const tagSeenCall*> all;
    for (const auto& [callId, call] : m_calls) {
        if (call.eStep != CALL_STEP::OVER && (call.caller == user || call.callee == user))
            all.push_back(&call);
    }
    return all;
}

void CallBook::endAllOf(const std::string& user, long now)
{
    std::vector<std::string> ids;
    for (const tagSeenCall* call : of(user))
        ids.push_back(call->callId);
    for (const std::string& callId : ids)
        end(callId, now);
}

void CallBook::sweep(long now)
{
    std::vector<std::string> lost;
    for (auto it = m_calls.begin(); it != m_calls.end();) {
        const tagSeenCall& call = it->second;
        if (call.eStep != CALL_STEP::OVER && now - call.nSince > LONGEST_SECONDS)
            lost.push_back(call.callId);
        it = call.eStep == CALL_STEP::OVER && now - call.nSince > OVER_SECONDS ? m_calls.erase(it)
                                                                               : std::next(it);
    }
    for (const std::string& callId : lost)
        end(callId, now);
}
