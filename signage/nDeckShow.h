#pragma once
// What those who fetch, register and hold a layout know of the running show. User-interface thread.
#include "signage/displayFrame.h"

class nDeckLayout;

class nDeckShow
{
public:
    // What the disk holds comes up.
    virtual void InitDisplay() = 0;
    // Takes up a frame, which is copied.
    virtual void UpdateDisplay(DisplayFrame* frame) = 0;
    // Whether what the disk held when the phone started is up already.
    virtual bool IsStoredShown() const = 0;
    // The schedule changes nothing. A clock that was wrong may have been put right since.
    virtual void OnFrameStays() = 0;
    // A file of the frame has come; name: bare.
    virtual void OnFileCame(const chString& name) = 0;
    // Whether one layout of the frame, whose files came or wait, misses nothing.
    virtual bool CanShowAny(const DisplayFrame& frame) = 0;
    // The frame that was taken up last.
    virtual DisplayFrame& GetDisplayFrame() = 0;
    // Whether layouts are drawn, or only timed.
    virtual int IsShowLayout() const = 0;
    // What comes after that layout is read ahead.
    virtual void PrepareAfter(const nDeckLayout& layout) = 0;

protected:
    virtual ~nDeckShow() = default;
};

nDeckShow& GetNDeckShow();
