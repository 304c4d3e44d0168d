#pragma once
// Work on a disk that may be slow, hang or be pulled, on a thread of its own: nobody is held up but that
// thread. Made, asked and destroyed by one thread.
#include "support/text/nuxExport.h"
#include <functional>
#include <memory>

class NUX_API chDiskWork
{
public:
    // work: owns all that it uses, since it may outlive this object.
    explicit chDiskWork(std::function<int()> work);
    // The work goes on, and nobody hears of it.
    ~chDiskWork();
    chDiskWork(const chDiskWork&) = delete;
    chDiskWork& operator=(const chDiskWork&) = delete;

    // Waits for its end at most so many milliseconds, a few frames for the user-interface thread; 1 when it
    // is over.
    int Wait(int ms) const;
    int IsOver() const { return Wait(0); }
    // What work answered; 0 before its end.
    int Result() const;
    // done is called once when the work is over, on its thread, or at once when it is already; never after
    // this object is gone.
    void Tell(std::function<void()> done);

private:
    struct State;
    std::shared_ptr<State> m_state;
};
