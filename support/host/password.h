#pragma once
// The password file: users with a salted hash of their password. A hash takes longer than a frame: asked on
// the user-interface thread, a check and a new password let its events go on meanwhile, touches and keys too.
// What a hash of the file may cost is bounded, to about half a second of a PC: yescrypt and scrypt with up to
// 64 MiB, SHA-crypt with up to 1,000,000 rounds, bcrypt with a cost of up to 12, MD5-crypt. Any other lets
// nobody in, and is traced when the file is read. When the phone ends, a hash that takes longer than a moment
// is left alone: the check fails then, and nothing is set.
#include "support/host/api.h"
#include "support/text/chString.h"

class HX_HOST_API filePassword
{
public:
    // Reads the file (a device path); a missing one leaves only "admin" with an empty password.
    explicit filePassword(const char* path);
    ~filePassword();
    filePassword(const filePassword&) = delete;
    filePassword& operator=(const filePassword&) = delete;
    // Takes the same time for a right and for a wrong password.
    int IsRightUserPassword(const char* user, const char* password) const;
    int SetUserPassword(const char* user, const char* password);
    // 1 when the file is on the disk, readable by its owner only.
    int SaveToFile(const char* path) const;

private:
    struct Private;
    Private* m_p;
};
