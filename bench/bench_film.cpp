// A film of a minute in a layout, from the file to the screen, against the media toolkit's own command line
// that decodes the same file in real time and shows nothing: frames that get lost on the way, and processor
// time. The phone runs in this process, its two players in theirs.
#include "bench/phoneBench.h"
#include "bench/runningPhone.h"
#include "bench/signPhone.h"
#include "host/services/messages/messageBus.h"
#include "host/services/players/videoFrames.h"
#include "places.h"
#include "support/host/player.h"
#include "support/host/video.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFile>
#include <QProcess>
#include <cstdio>
#include <set>
#include <sys/resource.h>
#include <unistd.h>

using namespace kit;

namespace {

constexpr int kSeconds = 60;
constexpr int kFrames = kSeconds * 25;
constexpr int kIdleSeconds = 10;
constexpr double kMostCpu = 1.5; // times that of the command line

const char* const kFilm = HX_BUILD_DIR "/benchFilm.mp4";

// The pipelines are the toolkit's own language; what is in single quotes is one argument.
bool launch(const QString& pipeline)
{
    return QProcess::execute("gst-launch-1.0", QProcess::splitCommand("-q -e " + pipeline)) == 0;
}

// Kept in the build folder: it takes a while to make.
bool makeFilm()
{
    if (QFile::exists(kFilm))
        return true;
    const QString part = QString(kFilm) + ".part";
    return launch(QString("videotestsrc num-buffers=%1 pattern=zone-plate kx2=6 ky2=4 kt=3 ! "
                          "video/x-raw,format=I420,width=800,height=480,framerate=25/1 ! x264enc bitrate=900 "
                          "speed-preset=veryfast key-int-max=50 bframes=0 ! "
                          "video/x-h264,profile=constrained-baseline ! h264parse ! mp4mux name=m ! "
                          "filesink location=%2 audiotestsrc num-buffers=%3 samplesperbuffer=441 ! "
                          "audio/x-raw,rate=44100,channels=2 ! audioconvert ! avenc_aac bitrate=96000 ! "
                          "aacparse ! m.")
                      .arg(kFrames)
                      .arg(part)
                      .arg(kSeconds * 100)) &&
           QFile::rename(part, kFilm);
}

double secondsOf(const timeval& time)
{
    return double(time.tv_sec) + double(time.tv_usec) / 1e6;
}

double cpuOf(int who)
{
    rusage usage = {};
    getrusage(who, &usage);
    return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

double cpuOfCommandLine()
{
    const double before = cpuOf(RUSAGE_CHILDREN);
    launch(QString("filesrc location=%1 ! qtdemux name=d d.video_0 ! queue ! h264parse ! avdec_h264 ! "
                   "fakesink sync=true d.audio_0 ! queue ! aacparse ! avdec_aac ! fakesink sync=true")
               .arg(kFilm));
    return cpuOf(RUSAGE_CHILDREN) - before;
}

// Which pictures of the media server the screen got.
class PictureWatch : public QObject
{
public:
    PictureWatch() { qApp->installEventFilter(this); }
    int count() const { return int(m_painted.size()); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        tagVideoPicture picture;
        if (event->type() == QEvent::Paint && qobject_cast<QVideoViewer*>(watched) &&
            videoFrames::instance().next(picture))
            m_painted.insert(picture.nFrame);
        return false;
    }

private:
    std::set<uint32_t> m_painted;
};

// Hears that the film has come to its end, before the client begins it anew.
class EndWatch : public chMsgProcesser
{
public:
    int TryThreadMessage(msgObject& msg) override
    {
        m_bEnd = m_bEnd || msg.message == MOVIE_MSG_FINISHED;
        return msg.message == MOVIE_MSG_FINISHED;
    }
    bool hasEnded() const { return m_bEnd; }

private:
    bool m_bEnd = false;
};

struct tagPlay
{
    double cpu = 0;  // of the phone beyond its idle, and of both players
    int written = 0; // pictures of the media server
    int painted = 0;
};

uint32_t writtenFrames()
{
    tagVideoPicture picture;
    return videoFrames::instance().newest(picture) ? picture.nFrame : 0;
}

class Players
{
public:
    explicit Players(const QString& root)
    {
        endWithUs(m_movie);
        endWithUs(m_media);
        m_movie.start(program("hxMovie"), {"--sysroot", root});
        m_media.start(program("hxMedia"), {"--sysroot", root});
    }
    ~Players()
    {
        for (QProcess* player : {&m_movie, &m_media}) {
            player->terminate();
            player->waitForFinished(3000);
        }
    }
    static bool areUp() { return msgGetThreadByName("app_hxMovie") && msgGetThreadByName("app_hxMedia"); }
    double cpu() const { return cpuSeconds(m_movie.processId()) + cpuSeconds(m_media.processId()); }
    void print() const
    {
        printf("hxMovie %.2f s, hxMedia %.2f s of processor time\n", cpuSeconds(m_movie.processId()),
               cpuSeconds(m_media.processId()));
    }

private:
    QProcess m_movie;
    QProcess m_media;
};

bool play(SignPhone& phone, const Players& players, tagPlay& result)
{
    const double idleBefore = cpuOf(RUSAGE_SELF);
    runUntil([] { return false; }, kIdleSeconds * 1000);
    const double idle = (cpuOf(RUSAGE_SELF) - idleBefore) / kIdleSeconds;
    EndWatch end;
    PictureWatch pictures;
    const double own = cpuOf(RUSAGE_SELF), theirs = players.cpu();
    QElapsedTimer timer;
    timer.start();
    const bool done = phone.takeUp(1, 1) && runUntil([&] { return end.hasEnded(); }, (kSeconds + 30) * 1000);
    runUntil([] { return false; }, 1000); // what is under way comes to the screen
    const double extra = cpuOf(RUSAGE_SELF) - own - idle * double(timer.elapsed()) / 1000;
    result = {extra + players.cpu() - theirs, int(writtenFrames()), pictures.count()};
    printf("the phone itself %.2f s of processor time\n", extra);
    players.print();
    return done;
}

} // namespace

int main(int argc, char** argv)
{
    if (!makeFilm()) {
        fprintf(stderr, "the film cannot be made\n");
        return 1;
    }
    const double commandLine = cpuOfCommandLine();
    SignServer server;
    server.putLayout("still.xml", signLayout("", "bgcolor=\"#203040\""));
    if (!server.start())
        return 1;
    SignPhone phone(argc, argv, server.url());
    tagPlay result;
    bool isGood = messageServiceStart("app_hxPhone") != 0;
    {
        Players players(phone.root());
        phone.show();
        isGood = isGood && phone.enter() && runUntil(Players::areUp, 10000);
        server.copyMedia("film.mp4", kFilm);
        server.dropLayout("still.xml");
        server.putLayout("film.xml",
                         signLayout(signRegion(QRect(0, 0, 800, 480), signVideo("film.mp4", 600))));
        isGood = isGood && play(phone, players, result);
    }
    if (!isGood) {
        fprintf(stderr, "the film did not come to its end\n");
        return 1;
    }
    RatioTable table;
    table.add(QString("pictures lost of %1, at the media server").arg(kFrames), kFrames - result.written, 0,
              "");
    table.add("pictures lost between it and the screen", result.written - result.painted, 0, "");
    table.add("processor time, against the command line", result.cpu, commandLine * kMostCpu, "s");
    const bool within = table.print();
    fflush(stdout);
    server.stop();
    _exit(within ? 0 : 1);
}
