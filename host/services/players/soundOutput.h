#pragma once
// Where sound goes. The phone's own is silent: a board puts its audio device here. User-interface thread.
#include "support/host/api.h"
#include <QString>
#include <memory>

class HX_HOST_API soundOutput
{
public:
    virtual ~soundOutput() = default;
    // file: a device path. False when there is no such file; one that turns out to be no sound is told to
    // speaker::fileFailed().
    virtual bool playFile(const QString& file, bool loop);
    virtual void stopFile();
    // A short tone of a key: the character of a DTMF key.
    virtual void playTone(int key);
    virtual void setLevel(int level); // 0 to 100
    virtual void setMute(bool mute);

    static soundOutput& instance();
    static void setInstance(std::unique_ptr<soundOutput> output);
};
