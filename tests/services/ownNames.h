#pragma once
// Names of a test's own that look-ups of this program find; all others go on to the system.
#include <QByteArray>
#include <QList>

namespace ownNames {

using Answer = QList<QByteArray>; // addresses

// What a name stands for each time it is looked up; the last answer stays.
void set(const QByteArray& name, const QList<Answer>& answers);

// While it lives, whoever looks up a name of a test's own waits. One at a time.
class HeldLookUps
{
public:
    HeldLookUps();
    // Releases, and waits until nobody is inside.
    ~HeldLookUps();
    HeldLookUps(const HeldLookUps&) = delete;
    HeldLookUps& operator=(const HeldLookUps&) = delete;
    // Threads that wait now.
    int waiting() const;
};

} // namespace ownNames
