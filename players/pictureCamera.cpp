#include "players/pictureCamera.h"
#include "players/callDesk.h"
#include "players/pictureSource.h"
#include "support/host/trace.h"
#include <gst/app/gstappsink.h>
#include <utility>

namespace {

QByteArray number(int value)
{
    return QByteArray::number(value);
}

// The best that is sent comes first; a camera without it gives what it has.
QByteArray sinkText()
{
    const QByteArray size =
        "width=" + number(pictureCamera::WIDTH) + ",height=" + number(pictureCamera::HEIGHT);
    return "appsink name=pictures sync=false async=false qos=false emit-signals=false "
           "enable-last-sample=false max-buffers=2 drop=true caps=\"video/x-raw," +
           size + ",framerate=[1/2," + number(pictureCamera::RATE) + "/1];video/x-raw," + size +
           ";video/x-raw\"";
}

// Of the steady clock, so that the times of a camera that is opened anew go on.
GstClockTime timeOf(GstSample* sample, GstElement* sink)
{
    const GstClockTime running = gst_segment_to_running_time(gst_sample_get_segment(sample), GST_FORMAT_TIME,
                                                             GST_BUFFER_PTS(gst_sample_get_buffer(sample)));
    return GST_CLOCK_TIME_IS_VALID(running) ? running + gst_element_get_base_time(sink)
                                            : GstClockTime(callDesk::nowUs()) * GST_USECOND;
}

} // namespace

pictureCamera::~pictureCamera()
{
    close();
}

bool pictureCamera::take(const void* who, SampleHandler onSample)
{
    if (m_pPipeline && !fault().isEmpty())
        close();
    if (!m_pPipeline && !open())
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_takers[who] = std::move(onSample);
    return true;
}

void pictureCamera::leave(const void* who)
{
    bool isLast = false;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_takers.erase(who);
        isLast = m_takers.empty();
    }
    if (isLast)
        close();
}

QByteArray pictureCamera::fault() const
{
    const std::lock_guard<std::mutex> lock(m_faultMutex);
    const bool isSilent = callDesk::nowUs() - m_nCameUs > SILENT_MS * qint64(1000);
    return m_fault.isEmpty() && isSilent ? QByteArray("nothing comes from it") : m_fault;
}

// What comes first is the cause of what follows.
void pictureCamera::fail(const QByteArray& fault)
{
    const std::lock_guard<std::mutex> lock(m_faultMutex);
    if (m_fault.isEmpty())
        m_fault = fault;
}

bool pictureCamera::open()
{
    m_nCameUs = callDesk::nowUs();
    {
        const std::lock_guard<std::mutex> lock(m_faultMutex);
        m_fault.clear();
    }
    GstElement* source = newPictureSource();
    if (!source) {
        fail("there is none");
        return false;
    }
    GError* error = nullptr;
    GstElement* sink = gst_parse_launch(sinkText().constData(), &error);
    m_pPipeline = gst_pipeline_new(nullptr);
    gst_bin_add(GST_BIN(m_pPipeline), source);
    const bool isMade = sink && !error && gst_bin_add(GST_BIN(m_pPipeline), sink);
    if (error)
        fail(error->message);
    g_clear_error(&error);
    if (!isMade) {
        close();
        return false;
    }
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<pictureCamera*>(self)->onSample(GST_ELEMENT(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    GstBus* bus = gst_element_get_bus(m_pPipeline);
    gst_bus_set_sync_handler(bus, onMessage, this, nullptr);
    gst_object_unref(bus);
    if (gst_element_link(source, sink) &&
        gst_element_set_state(m_pPipeline, GST_STATE_PLAYING) != GST_STATE_CHANGE_FAILURE)
        return true;
    fail("it cannot be opened");
    close();
    return false;
}

// Not under a lock, which its pictures take.
void pictureCamera::close()
{
    if (!m_pPipeline)
        return;
    gst_element_set_state(m_pPipeline, GST_STATE_NULL);
    gst_object_unref(std::exchange(m_pPipeline, nullptr));
}

GstBusSyncReply pictureCamera::onMessage(GstBus*, GstMessage* message, gpointer self)
{
    auto* camera = static_cast<pictureCamera*>(self);
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_ERROR) {
        GError* error = nullptr;
        gst_message_parse_error(message, &error, nullptr);
        camera->fail(error ? error->message : "it has failed");
        g_clear_error(&error);
    } else if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_EOS) {
        camera->fail("it has ended");
    }
    gst_message_unref(message);
    return GST_BUS_DROP;
}

// The picture itself is everybody's, and nobody's copy.
void pictureCamera::onSample(GstElement* sink)
{
    GstSample* taken = gst_app_sink_pull_sample(GST_APP_SINK(sink));
    if (!taken)
        return;
    m_nCameUs = callDesk::nowUs();
    GstBuffer* picture = gst_buffer_copy(gst_sample_get_buffer(taken));
    GST_BUFFER_PTS(picture) = timeOf(taken, sink);
    GST_BUFFER_DTS(picture) = GST_CLOCK_TIME_NONE;
    GstSample* sample = gst_sample_new(picture, gst_sample_get_caps(taken), nullptr, nullptr);
    gst_buffer_unref(picture);
    gst_sample_unref(taken);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const auto& [who, onSample] : m_takers)
            onSample(sample);
    }
    gst_sample_unref(sample);
}
