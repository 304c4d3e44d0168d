#pragma once
// A row of parts of the media toolkit with a way in and a way out, which has no thread of its own.
#include "players/soundStep.h"
#include <gst/gst.h>
#include <memory>

class soundChain : public soundStep
{
public:
    // description: in the words of gst-launch-1.0. in, out: what goes in and comes out. Null, with a trace
    // line, when a part is missing.
    static std::unique_ptr<soundChain> make(const char* description, const char* in, const char* out);
    ~soundChain() override;
    soundChain(const soundChain&) = delete;
    soundChain& operator=(const soundChain&) = delete;

    bool push(const void* data, int bytes, qint64 ns) override;
    bool pushGap(qint64 ns) override;
    // Null when there is no such part.
    GstElement* part(const char* name) const;
    // A pad of no element, for what these caps say. The caller's.
    static GstPad* newPad(const char* caps, GstPadDirection direction);

private:
    soundChain() = default;
    bool open(const char* description, const char* in, const char* out);
    static GstFlowReturn onOutput(GstPad* pad, GstObject* parent, GstBuffer* buffer);

    GstElement* m_pBin = nullptr;
    GstPad* m_pIn = nullptr;
    GstPad* m_pOut = nullptr;
    qint64 m_nTime = 0; // ns, of what goes in
};
