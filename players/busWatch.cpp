#include "players/busWatch.h"
#include "players/soundThread.h"
#include "support/host/trace.h"

namespace {

// Of the thread itself, which the toolkit gives to somebody else afterwards.
void setPlaceOfThread(GstMessage* message)
{
    GstStreamStatusType type = GST_STREAM_STATUS_TYPE_CREATE;
    gst_message_parse_stream_status(message, &type, nullptr);
    if (type == GST_STREAM_STATUS_TYPE_ENTER)
        soundThreadComesFirst();
    else if (type == GST_STREAM_STATUS_TYPE_LEAVE)
        soundThreadIsAsOthers();
}

} // namespace

busWatch::busWatch(GstElement* pipeline, const QByteArray& name, Handler handler)
    : m_pPipeline(pipeline), m_name(name), m_handler(std::move(handler))
{
    GstBus* bus = gst_element_get_bus(pipeline);
    gst_bus_set_sync_handler(bus, onMessage, this, nullptr);
    gst_object_unref(bus);
}

busWatch::~busWatch()
{
    // No thread of the pipeline reports any more once it has stopped.
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    GstBus* bus = gst_element_get_bus(m_pPipeline);
    gst_bus_set_sync_handler(bus, nullptr, nullptr, nullptr);
    gst_object_unref(bus);
}

GstBusSyncReply busWatch::onMessage(GstBus*, GstMessage* message, gpointer self)
{
    auto* watch = static_cast<busWatch*>(self);
    switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_STREAM_STATUS:
        if (watch->m_bFirst)
            setPlaceOfThread(message);
        break;
    case GST_MESSAGE_ASYNC_DONE:
        watch->post(EVENT::READY);
        break;
    case GST_MESSAGE_SEGMENT_DONE:
        watch->post(EVENT::SEGMENT);
        break;
    case GST_MESSAGE_EOS:
        watch->post(EVENT::END);
        break;
    case GST_MESSAGE_ERROR:
        watch->traceError(message);
        watch->post(EVENT::FAILED);
        break;
    default:
        break;
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

// As an event of this object, which goes with it.
void busWatch::post(EVENT event)
{
    QMetaObject::invokeMethod(
        this,
        [this, event] {
            const Handler handler = m_handler; // it may end this object
            handler(event);
        },
        Qt::QueuedConnection);
}

void busWatch::traceError(GstMessage* message) const
{
    if (m_name.isEmpty())
        return;
    GError* error = nullptr;
    gst_message_parse_error(message, &error, nullptr);
    nuxTrace(TRACE_NOTE, "%s: %s", m_name.constData(), error ? error->message : "failed");
    g_clear_error(&error);
}
