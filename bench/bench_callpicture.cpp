// Processor time of one end of a call with moving pictures of 640x480, 25 a second, both ways: the phone's
// media server beside a phone that nobody here wrote, which is the other end of the same call and shows
// nothing on a screen. With VP8 both have the same encoder; with H.264 ours is OpenH264 and theirs libx264 at
// its quickest, since Debian's has no other.
//   bench_callpicture [vp8] [h264]   these alone
#include "bench/phoneBench.h"
#include "places.h"
#include "tests/kit/plain/processes.h"
#include "tests/pbx/baresipPair.h"
#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <cstdio>

namespace {

constexpr int kFilmSeconds = 40;
constexpr int kSettleSeconds = 5;
constexpr int kSeconds = 15;
constexpr int kRounds = 2;
constexpr double kMost = 1.3; // times the other phone's
const char* const kFilm = HX_BUILD_DIR "/benchCall.y4m";

// Kept in the build folder: it takes a while to make.
bool makeFilm()
{
    const QString part = QString(kFilm) + ".part";
    const QString pipeline =
        QString("videotestsrc num-buffers=%1 pattern=zone-plate kx2=6 ky2=4 kt=3 ! "
                "video/x-raw,format=I420,width=640,height=480,framerate=25/1 ! y4menc ! filesink location=%2")
            .arg(kFilmSeconds * 25)
            .arg(part);
    return QFile::exists(kFilm) ||
           (QProcess::execute("gst-launch-1.0", QProcess::splitCommand("-q -e " + pipeline)) == 0 &&
            QFile::rename(part, kFilm));
}

struct tagCosts
{
    double ours = 0; // ms of processor a second
    double theirs = 0;
};

class PictureCall
{
public:
    bool begin(const QByteArray& module)
    {
        tagPhoneSetup ours;
        ours.says = "audiotestsrc is-live=true samplesperbuffer=160 volume=0.1";
        ours.shows = QByteArray("filesrc location=") + kFilm + " ! y4mdec ! identity sync=true";
        tagBaresipSound theirs;
        theirs.codec = "PCMA/8000/1";
        theirs.settings = BaresipProcess::pictureSettings(module, kFilm);
        return (m_pair.startExchange() && m_pair.startPhones(ours, theirs) && m_pair.talk()) ||
               complain("there is no call");
    }
    bool measure(const QString& codec, tagCosts& costs)
    {
        QThread::sleep(kSettleSeconds);
        if (m_pair.phone().call()["picture"].toString() != codec)
            return complain("another codec was agreed on");
        const qint64 ours = kit::scheduledNs(m_pair.phone().mediaPid());
        const qint64 theirs = kit::scheduledNs(m_pair.other().pid());
        QThread::sleep(kSeconds);
        costs.ours = double(kit::scheduledNs(m_pair.phone().mediaPid()) - ours) / 1e6 / kSeconds;
        costs.theirs = double(kit::scheduledNs(m_pair.other().pid()) - theirs) / 1e6 / kSeconds;
        return m_pair.phone().call()["state"] == "talking" || complain("the call has ended");
    }

private:
    bool complain(const char* what)
    {
        fprintf(stderr, "%s\n%s\n", what, m_pair.fault().constData());
        return false;
    }

    BaresipPair m_pair;
};

struct tagCodec
{
    const char* pPart;
    const char* pModule;
    const char* pShown;
};
constexpr tagCodec kCodecs[] = {{"vp8", "vp8", "VP8"}, {"h264", "avcodec", "H.264"}};

// The cheapest round of each.
bool addCodec(const tagCodec& codec, RatioTable& table)
{
    tagCosts best;
    for (int round = 0; round < kRounds; ++round) {
        PictureCall call;
        tagCosts costs;
        if (!call.begin(codec.pModule) || !call.measure(codec.pShown, costs))
            return false;
        printf("%s: %.1f ms a second, the other phone %.1f\n", codec.pShown, costs.ours, costs.theirs);
        best.ours = round == 0 ? costs.ours : std::min(best.ours, costs.ours);
        best.theirs = round == 0 ? costs.theirs : std::min(best.theirs, costs.theirs);
    }
    table.add(QString("%1, 640x480 at 25/s both ways, processor time a second").arg(codec.pShown), best.ours,
              kMost * best.theirs, "ms");
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList parts = application.arguments().mid(1);
    RatioTable table;
    if (!makeFilm())
        return 1;
    for (const tagCodec& codec : kCodecs) {
        if ((parts.isEmpty() || parts.contains(codec.pPart)) && !addCodec(codec, table))
            return 1;
    }
    return table.print() ? 0 : 1;
}
