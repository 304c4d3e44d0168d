#pragma once
// One tone of the phone, from a sound file or from samples, to the loudspeaker. Main thread.
#include "players/busWatch.h"
#include "players/soundVolume.h"
#include <QByteArray>
#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <vector>

class toneStream
{
public:
    enum : int { SAMPLE_RATE = 16000 }; // of samples: one channel, from -1 to 1
    // It is over, or failed and plays no more; told once, never before start() is over. It may end this
    // object.
    using EndCall = std::function<void(bool failed)>;

    toneStream(const QByteArray& name, EndCall onEnd) : m_name(name), m_onEnd(std::move(onEnd)) {}
    ~toneStream();
    toneStream(const toneStream&) = delete;
    toneStream& operator=(const toneStream&) = delete;

    // file: a regular file of this machine. loop: round and round, without a gap where its kind allows that.
    // False when it cannot be begun. Without a loudspeaker nothing is done, and that is no failure.
    bool startFile(const QByteArray& file, bool loop);
    bool startSamples(const std::vector<float>& samples);
    // As soundVolume says.
    void setVolume(int level, bool mute) { m_volume.set(level, mute); }

private:
    enum : int { SHORTEST_TURN_MS = 50 }; // a shorter one would only keep the processor busy

    GstElement* add(const char* name);
    // Makes the pipeline with its end; the element that sound goes into. Null, and no pipeline, without a
    // loudspeaker.
    GstElement* build();
    bool play(GstState first);
    void onEvent(busWatch::EVENT event);
    void begin();
    bool turn(GstSeekFlags flags);
    void over(bool failed);

    QByteArray m_name;
    EndCall m_onEnd;
    soundVolume m_volume;
    GstElement* m_pPipeline = nullptr;
    std::unique_ptr<busWatch> m_watch;
    QElapsedTimer m_turn;
    bool m_bLoop = false;
    bool m_bSeeks = false; // the first turn is asked for
};
