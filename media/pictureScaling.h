#pragma once
// The order to the program that scales an imported picture, "/mini-boot/bin/imageScale.exx": all five words
// in one argument, each behind a mark. It is started without a shell. Any thread.
#include <atomic>
#include <string>

struct tagScaleOrder
{
    std::string strSource; // device paths
    std::string strTarget;
    int nWidth = 0; // pixels
    int nHeight = 0;
};

// The command as a person would type it, for the log; empty when it has more than 255 bytes: such a picture
// is not scaled.
std::string scaleCommand(const tagScaleOrder& order);
// What the program has written into its file, a device path: false for the text "0" and nothing else, also
// when there is no such file or it is too large to be a verdict.
bool isScaleVerdictGood(const char* file);
// Runs the program and waits, not on the user-interface thread. False when its verdict is the text "0", or
// when it did not end by itself; cancel ends it from another thread.
bool scalePicture(const tagScaleOrder& order, const std::atomic<bool>& cancel);
