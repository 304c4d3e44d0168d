#pragma once
// What a pipeline reports, brought to the thread that made this. Reports that are under way when this ends
// are dropped.
#include <QObject>
#include <functional>
#include <gst/gst.h>

class busWatch : public QObject
{
public:
    // Came to its pause; came to the end of the segment that was asked for; came to the end of the stream;
    // cannot go on.
    enum class EVENT { READY, SEGMENT, END, FAILED };
    using Handler = std::function<void(EVENT)>;

    // The pipeline must live as long as this. name: what a trace line of a failure calls it; empty: there
    // is none.
    busWatch(GstElement* pipeline, const QByteArray& name, Handler handler);
    ~busWatch() override;
    // The pipeline's threads are those of a sound that somebody waits for; before it begins.
    void setFirst() { m_bFirst = true; }

private:
    static GstBusSyncReply onMessage(GstBus* bus, GstMessage* message, gpointer self);
    void post(EVENT event);
    void traceError(GstMessage* message) const;

    GstElement* m_pPipeline;
    QByteArray m_name;
    Handler m_handler;
    bool m_bFirst = false;
};
