#include "players/filmElements.h"
#include "support/host/trace.h"
#include <gst/gst.h>

namespace {

const char* const kElements[] = {"udpsrc",       "queue",        "rtph264depay",      "avdec_h264",
                                 "appsink",      "avdec_aac",    "videoconvertscale", "rtpmp4gdepay",
                                 "audioconvert", "audioresample"};

void loadElements()
{
    for (const char* name : kElements) {
        GstElement* element = gst_element_factory_make(name, nullptr);
        if (element)
            gst_object_unref(gst_object_ref_sink(element));
        else
            nuxTrace(TRACE_NOTE, "the element %s is missing", name);
    }
}

} // namespace

filmElements::~filmElements()
{
    if (m_thread)
        m_thread->wait();
}

void filmElements::load()
{
    if (m_thread)
        return;
    m_thread.reset(QThread::create(loadElements));
    QObject::connect(m_thread.get(), &QThread::finished, &m_here, [this] {
        m_bThere = true;
        m_onThere();
    });
    m_thread->start();
}
