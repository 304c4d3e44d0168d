#pragma once
// The file of the programmable keys with a history of changes, and somebody who reads it all the time: the
// nth change gives one key a label and a number that tell n.
#include <QString>
#include <atomic>
#include <thread>

QString watchedExtension(int key);
// Of the key, from 0, after so many changes: the nth one is that of key n - 1, and so round.
QString changedLabel(int key, int change);
QString changedValue(int key, int change);

class KeyReader
{
public:
    KeyReader();
    ~KeyReader();
    // The last change that was in the file.
    int seen() const { return m_nSeen; }
    // How often there was what no change has made, or one before it.
    int broken() const { return m_nBroken; }
    int reads() const { return m_nReads; }

    // Twenty keys that watch extensions, before any change.
    static void putFirst();
    // The change after which the keys are as the file has them; -1 for none.
    static int changeOfFile();

private:
    void run();

    std::atomic<int> m_nSeen{0};
    std::atomic<int> m_nBroken{0};
    std::atomic<int> m_nReads{0};
    std::atomic<bool> m_bEnds{false};
    std::thread m_thread; // the last: it begins when all else is there
};
