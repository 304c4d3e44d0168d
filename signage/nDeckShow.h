#pragma once
// What those who fetch, register and hold a layout know of the running show. User-interface thread.
#include "signage/displayFrame.h"

class nDeckShow
{
public:
    // What the disk holds comes up.
    virtual void InitDisplay() = 0;
    // Takes up a frame, which is copied.
    virtual void UpdateDisplay(DisplayFrame* frame) = 0;
    // The frame that was taken up last.
    virtual DisplayFrame& GetDisplayFrame() = 0;
    // Whether layouts are drawn, or only timed.
    virtual int IsShowLayout() const = 0;

protected:
    virtual ~nDeckShow() = default;
};

nDeckShow& GetNDeckShow();
