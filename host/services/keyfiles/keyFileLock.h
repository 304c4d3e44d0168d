#pragma once
// The lock that the writers of key files take, threads and processes alike. It lies on a file of its own
// that only the phone's user may open, so nobody else can hold it, and it ends with its process.
// Whoever waits is next: a writer that comes again at once stands behind him. Any thread.
#include <string>

class keyFileLock
{
public:
    static constexpr int WAIT_MS = 50; // then it is not taken; a writer that was stopped holds up nobody

    // folder: machine path.
    explicit keyFileLock(const std::string& folder);
    ~keyFileLock();
    keyFileLock(const keyFileLock&) = delete;
    keyFileLock& operator=(const keyFileLock&) = delete;
    bool IsTaken() const { return m_bTaken; }
    // True when another writer had it for the whole wait.
    bool IsBusy() const { return m_bBusy; }

private:
    enum BYTE { NEXT, WORK }; // places in the file: whose turn it is next, and who is at work
    bool IsOurs(const std::string& folder) const;
    bool Take(BYTE byte, long long deadlineUs);
    bool Set(BYTE byte, short type) const;

    int m_nFd = -1;
    bool m_bTaken = false;
    bool m_bBusy = false;
};
