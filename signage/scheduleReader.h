#pragma once
// Reads what the signage server answers. User-interface thread.
#include "signage/displayFrame.h"
#include "support/xml/xmlFile.h"

enum : int {
    SCHEDULE_LAYOUT_LIMIT = 256,  // layouts of a schedule whose time is now; the others are left out
    SCHEDULE_MEDIA_LIMIT = 10000, // media files of a schedule, likewise
    SCHEDULE_TEXT_LIMIT = 255     // bytes of an attribute; an entry with a longer one is left out
};

// The element of that name in the reply's result; null when there is none.
const xmlElement* serverResult(const xmlDocument& reply, const char* name);

// A schedule. What a damaged one holds up to the damage is there.
class scheduleReader
{
public:
    explicit scheduleReader(const char* file);
    bool IsEmpty() const { return m_bEmpty; }
    // Well-formed up to its end.
    bool IsValid() const { return m_bValid; }
    bool HasResult(const char* name) const { return serverResult(m_document, name) != nullptr; }
    // A server that knows what a schedule is said this, though it may hold nothing.
    bool IsSchedule() const;
    // Appends the layouts whose time is now, and the media, as they stand in the schedule.
    void GetLayouts(nDeckLayoutList& layouts) const;
    void GetMedias(nDeckNodeList& medias) const;

private:
    xmlElement* Entries(const char* group, const char* entry) const;

    xmlDocument m_document;
    bool m_bEmpty = true;
    bool m_bValid = false;
};
