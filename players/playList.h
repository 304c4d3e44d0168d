#pragma once
// The films of a list and which of them plays; the last is followed by the first.
#include <QByteArray>
#include <QList>

class playList
{
public:
    enum : int { MAX_FILES = 10000 };

    void clear();
    // False when there is no room.
    bool add(const QByteArray& path);
    bool isEmpty() const { return m_files.isEmpty(); }
    int size() const { return int(m_files.size()); }
    // Each makes one the present film; nothing in an empty list.
    void toFirst() { m_nPresent = 0; }
    void toNext();
    void toPrevious();
    QByteArray present() const { return m_files.value(m_nPresent); }

private:
    QList<QByteArray> m_files;
    int m_nPresent = 0;
};
