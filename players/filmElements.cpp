#include "players/filmElements.h"
#include "support/host/trace.h"
#include <gst/gst.h>

namespace {

void loadElements(const QList<QByteArray>& names)
{
    for (const QByteArray& name : names) {
        GstElement* element = gst_element_factory_make(name.constData(), nullptr);
        if (element)
            gst_object_unref(gst_object_ref_sink(element));
        else
            nuxTrace(TRACE_NOTE, "the element %s is missing", name.constData());
    }
}

} // namespace

QList<QByteArray> filmElements::film()
{
    return {"udpsrc",       "queue",        "rtph264depay",      "avdec_h264",
            "appsink",      "avdec_aac",    "videoconvertscale", "rtpmp4gdepay",
            "audioconvert", "audioresample"};
}

filmElements::~filmElements()
{
    if (m_thread)
        m_thread->wait();
}

void filmElements::load()
{
    if (m_thread)
        return;
    m_thread.reset(QThread::create(loadElements, m_names));
    QObject::connect(m_thread.get(), &QThread::finished, &m_here, [this] {
        m_bThere = true;
        m_onThere();
    });
    m_thread->start();
}
