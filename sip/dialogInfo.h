#pragma once
// What the dialogues of an extension are, as a server writes it (RFC 4235).
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

enum class DIALOG_STATE { TRYING, PROCEEDING, EARLY, CONFIRMED, TERMINATED };
enum class DIALOG_DIRECTION { UNKNOWN, OUT, IN };

struct tagDialog
{
    std::string id;
    DIALOG_STATE eState = DIALOG_STATE::TERMINATED;
    DIALOG_DIRECTION eDirection = DIALOG_DIRECTION::UNKNOWN;
    // Who the dialogue is with, and what names it; empty where it is not told, or would not stand in a
    // header.
    std::string target;
    std::string identity;
    std::string name; // as people know it
    std::string callId;
    std::string localTag;
    std::string remoteTag;
};

struct tagDialogInfo
{
    uint32_t nVersion = 0;
    bool bWhole = false; // these are all that there are
    std::vector<tagDialog> dialogs;
};

namespace dialogInfo {

enum : size_t { DIALOGS_MAX = 64 };

// False for what is damaged, or beyond the bounds.
bool read(const char* bytes, size_t size, tagDialogInfo& info);

} // namespace dialogInfo
