#pragma once
// A request that is answered later than it is told.
#include "sip/sipStack.h"
#include <sofia-sip/sip.h>
#include <sofia-sip/sip_header.h>

class SavedRequest
{
public:
    // The one that is being told.
    explicit SavedRequest(nua_t* nua) { nua_save_event(nua, m_event); }
    ~SavedRequest() { nua_destroy_event(m_event); }
    SavedRequest(const SavedRequest&) = delete;
    SavedRequest& operator=(const SavedRequest&) = delete;

    const sip_t& sip() const { return *sip_object(message()); }
    msg_t* message() const { return nua_saved_event_request(m_event); }

private:
    nua_saved_event_t m_event[1] = {};
};
