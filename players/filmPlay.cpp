#include "players/filmPlay.h"
#include "support/host/trace.h"

namespace {

constexpr int kPrepareMs = 5000;  // for a file that yields nothing
constexpr int kReceiverMs = 1000; // for a receiver that does not come: the streams may go to another one
constexpr int kLoadingMs = 5000;  // for one that is being loaded
constexpr int kBeginningMs = 150; // what goes out at once at the beginning of a film
constexpr int kJustBegunMs = 300; // a receiver that says so twice has missed nothing

} // namespace

filmPlay::filmPlay(const QByteArray& file, const tagTarget& target, bool isQuiet, const tagHandlers& handlers)
    : m_target(target), m_handlers(handlers), m_streams(file, &target)
{
    m_patience.setSingleShot(true);
    QObject::connect(&m_patience, &QTimer::timeout, &m_patience, [this] {
        if (m_bPrepared)
            go();
        else
            end(END::FAILED);
    });
    m_beginning.setSingleShot(true);
    QObject::connect(&m_beginning, &QTimer::timeout, &m_beginning,
                     [this] { gst_element_set_state(m_streams.pipeline(), GST_STATE_PAUSED); });
    if (m_streams.pipeline())
        m_watch = std::make_unique<busWatch>(m_streams.pipeline(), isQuiet ? QByteArray() : file,
                                             [this](busWatch::EVENT event) { onEvent(event); });
}

void filmPlay::start()
{
    m_sinceStart.start();
    m_patience.start(m_watch ? kPrepareMs : 0);
    if (m_watch)
        gst_element_set_state(m_streams.pipeline(), GST_STATE_PAUSED);
}

void filmPlay::onEvent(busWatch::EVENT event)
{
    if (event == busWatch::EVENT::FAILED)
        end(END::FAILED);
    else if (event == busWatch::EVENT::END && m_bPaused && m_bBeginning)
        m_beginning.stop(); // a film of a moment has not been played yet
    else if (event == busWatch::EVENT::END)
        end(m_bPrepared ? END::FINISHED : END::FAILED);
    else if (!m_bPrepared)
        prepared();
}

void filmPlay::prepared()
{
    m_patience.stop();
    if (!m_streams.describe(m_description)) {
        end(END::FAILED);
        return;
    }
    m_bPrepared = true;
    if (m_handlers.onReady(m_description))
        m_patience.start(kReceiverMs);
    else
        go();
}

void filmPlay::go()
{
    m_patience.stop();
    m_bGoing = true;
    m_sending.start();
    if (m_bPaused)
        showBeginning();
    else
        gst_element_set_state(m_streams.pipeline(), GST_STATE_PLAYING);
}

void filmPlay::showBeginning()
{
    m_bBeginning = true;
    m_streams.silence(true);
    gst_element_set_state(m_streams.pipeline(), GST_STATE_PLAYING);
    m_beginning.start(kBeginningMs);
}

void filmPlay::end(END how)
{
    m_patience.stop();
    const std::function<void(END)> handler = m_handlers.onEnd; // it may end this object
    handler(how);
}

void filmPlay::receiverReady()
{
    if (!m_bPrepared)
        return;
    if (!m_bGoing)
        go();
    else if (m_sending.elapsed() > kJustBegunMs)
        sendAgain();
}

void filmPlay::receiverComes()
{
    if (m_bPrepared && !m_bGoing)
        m_patience.start(kLoadingMs);
}

void filmPlay::sendAgain()
{
    gint64 position = 0;
    m_sending.start();
    if (gst_element_query_position(m_streams.pipeline(), GST_FORMAT_TIME, &position))
        sendFrom(position);
}

void filmPlay::sendFrom(gint64 position)
{
    gst_element_seek_simple(
        m_streams.pipeline(), GST_FORMAT_TIME,
        GstSeekFlags(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_SNAP_BEFORE), position);
}

void filmPlay::pause()
{
    m_bPaused = true;
    if (m_bGoing)
        gst_element_set_state(m_streams.pipeline(), GST_STATE_PAUSED);
}

void filmPlay::resume()
{
    m_bPaused = false;
    m_beginning.stop();
    if (m_bBeginning) {
        m_streams.silence(false);
        sendFrom(0);
    }
    m_bBeginning = false;
    if (m_bGoing)
        gst_element_set_state(m_streams.pipeline(), GST_STATE_PLAYING);
}
