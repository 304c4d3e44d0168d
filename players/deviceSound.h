#pragma once
// Loudspeaker and microphone of calls: the devices of the system, where there are any; what the microphone
// hears of the loudspeaker is taken out again. Without devices calls are silent. Main thread, but for frames.
#include "players/busWatch.h"
#include "players/callDesk.h"
#include "players/heardFrames.h"
#include "players/soundVolume.h"

class deviceSound : public soundPort
{
public:
    deviceSound() = default;
    ~deviceSound() override;

    // Takes the devices, which may take a while; nothing when they are taken. Frames may come and go
    // meanwhile, but for close().
    void open();
    void close();
    // As soundVolume says.
    void setVolume(int level, bool mute) { m_volume.set(level, mute); }

    void read(short* frame) override;
    void write(const short* frame) override;

private:
    void buildLoudspeaker(GstElement* sink, bool echo);
    void buildMicrophone(GstElement* source, bool echo);
    GstElement* add(const char* name, const char* called = nullptr);
    GstElement* addConverter(GstElement* from);
    static GstFlowReturn onHeard(GstPad* pad, GstObject* parent, GstBuffer* buffer);
    void onFailure();

    GstElement* m_pPipeline = nullptr;
    bool m_bSource = false;               // the pipeline has a microphone
    GstElement* m_pLoudspeaker = nullptr; // takes frames
    GstPad* m_pHeard = nullptr;           // the end of the microphone
    soundVolume m_volume;
    std::unique_ptr<busWatch> m_watch;
    std::mutex m_mutex;           // of what follows
    GstElement* m_pOut = nullptr; // the loudspeaker, when all is built
    heardFrames m_heard;
};
