// A server that wants to harm the phone: with its names, with the size and the shape of its replies.
#include "tests/e2e/livePhone.h"
#include "tests/kit/plain/processes.h"
#include "tests/reliability/deckFolder.h"
#include "tests/reliability/hostileServer.h"
#include "tests/reliability/syncPeer.h"
#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QThread>
#include <atomic>

using namespace kit;

namespace {

#define SYSTEM_FILE "/rundata/config/system.ini"
constexpr int kWaitMs = 30000;
// A living phone answers hxctl in that time. The sanitizers make it slower, and keep what was freed.
#if defined(__SANITIZE_ADDRESS__)
constexpr int kAnswerMs = 3000;
constexpr qint64 kGrowthKiB = 400 << 10;
#else
constexpr int kAnswerMs = 1000;
constexpr qint64 kGrowthKiB = 64 << 10;
#endif
constexpr int kUnderAttackMs = 2500; // or until the phone has got over it and asks again
constexpr int kAtLeastMs = 1000;
constexpr int kPauseMs = 5;
constexpr qint64 kMegabyte = 1 << 20;

QByteArray md5(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

QByteArray redPicture()
{
    QImage image(400, 240, QImage::Format_RGB32);
    image.fill(QColor(220, 30, 30));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "png");
    return bytes;
}

const QByteArray& showLayout()
{
    static const QByteArray text =
        "<layout width=\"800\" height=\"480\">"
        "<region left=\"0\" top=\"0\" width=\"800\" height=\"480\">"
        "<media type=\"image\" path=\"red.png\" duration=\"1\"/></region></layout>";
    return text;
}

// A value between quotation marks, with everything in it that XML cannot hold as it is.
QByteArray quoted(const QByteArray& value)
{
    QByteArray text;
    for (const char letter : value) {
        const auto byte = static_cast<unsigned char>(letter);
        if (byte < ' ' || byte == 0x7f || strchr("<>&\"'", letter))
            text += "&#" + QByteArray::number(int(byte)) + ";";
        else
            text += letter;
    }
    return '"' + text + '"';
}

QByteArray fileEntry(const char* type, const QByteArray& name, const QByteArray& content,
                     const QByteArray& size = "")
{
    return QByteArray("<file type=\"") + type + "\" path=" + quoted(name) + " md5=\"" + md5(content) +
           "\" size=\"" + (size.isEmpty() ? QByteArray::number(content.size()) : size) + "\"/>";
}

QByteArray layoutEntry(const QByteArray& name)
{
    return "<layout file=" + quoted(name) +
           " fromdt=\"2000-01-01 00:00:00\" todt=\"2037-01-01 00:00:00\" eventType=\"\" applet=\"\"/>";
}

// Everything that is shown, and more of each kind.
QByteArray schedule(const QByteArray& layouts = "", const QByteArray& files = "")
{
    return "<norvane><ndeck><result><success/></result><schedule>" + layoutEntry("show.xml") + layouts +
           "</schedule><files>" + fileEntry("layout", "show.xml", showLayout()) +
           fileEntry("media", "red.png", redPicture()) + files + "</files></ndeck></norvane>";
}

QByteArray valueOf(const QByteArray& target, const QByteArray& name)
{
    const qsizetype at = target.indexOf(name + '=');
    return at < 0 ? QByteArray() : target.mid(at + name.size() + 1);
}

// The harmless part of the server. False for what it does not know.
bool answerGood(HostileServer::Wire& wire, const QByteArray& target)
{
    const QByteArray file = valueOf(target, "filePath");
    if (target.startsWith("/service/register.htm"))
        wire.answer(HostileServer::registered());
    else if (file == "red.png")
        wire.answer(redPicture());
    else if (file == "show.xml")
        wire.answer(showLayout());
    else
        return false;
    return true;
}

// All files of the device but those of the signage folder and the phone's own traces of running.
QMap<QString, QString> filesOutside(const QString& root)
{
    QMap<QString, QString> files;
    QDirIterator all(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = all.next().mid(root.size());
        const bool isOwn = path.startsWith("/rundata/nDeck/") || path.startsWith("/rundata/run/") ||
                           path == "/control" || path == "/screen.ppm" || path == "/tmp/ndeck_reg_result.txt";
        if (!isOwn)
            files[path] = QString("%1 bytes of %2")
                              .arg(all.fileInfo().size())
                              .arg(all.fileInfo().lastModified().toMSecsSinceEpoch());
    }
    return files;
}

class HostileSignage : public LivePhone
{
protected:
    void launch(const QString& url)
    {
        joinSignage(url, 300);
        before = filesOutside(root());
        ctl({"set", "net", "state=2"});
        ctl({"open-info", "Ndeck", "", "Ndeck"});
    }
    QColor middleOfScreen() { return screen().pixelColor(400, 240); }
    bool showsRed()
    {
        return waits([&] { return middleOfScreen() == QColor(220, 30, 30); }, kWaitMs);
    }
    // The slowest answer of the phone under the attack, less what it stood ready while other programs had the
    // processors. began: how often it has asked for it.
    qint64 slowestAnswer(const std::atomic<int>& began)
    {
        QElapsedTimer all;
        all.start();
        qint64 slowest = 0;
        const auto isOn = [&] {
            return began == 0 || all.elapsed() < (began == 1 ? kUnderAttackMs : kAtLeastMs);
        };
        while (!HasFailure() && isOn()) {
            const qint64 queued = queuedNs(pid()) + queuedNs(getpid());
            QElapsedTimer one;
            one.start();
            ctl({"config", SYSTEM_FILE, "nDeck", "bEnable"});
            const qint64 took = one.nsecsElapsed();
            slowest = qMax(slowest, (took - (queuedNs(pid()) + queuedNs(getpid()) - queued)) / 1000000);
            EXPECT_LT(all.elapsed(), kWaitMs) << "the attack does not get through";
            QThread::msleep(kPauseMs);
        }
        return slowest;
    }

    QMap<QString, QString> before; // what was outside the folder when the attack began
};

struct Attack
{
    const char* name;
    std::function<void(HostileServer::Wire& wire, const std::function<bool()>& isOn)> run;
};

void sendMuch(HostileServer::Wire& wire, qint64 bytes, const QByteArray& unit,
              const std::function<bool()>& isOn)
{
    QByteArray block;
    while (block.size() < 64 << 10)
        block += unit;
    for (qint64 sent = 0; sent < bytes && isOn(); sent += block.size()) {
        if (!wire.send(block))
            return;
    }
}

QByteArray manyEntries(int count, bool full)
{
    QByteArray files;
    for (int i = 0; i < count; ++i)
        files += full ? "<file type=\"media\" path=\"f" + QByteArray::number(i) + "\" md5=\"0\" size=\"1\"/>"
                      : QByteArray("<file/>");
    return schedule("", files);
}

QList<Attack> attacks()
{
    const QByteArray entry = fileEntry("media", "x.png", "x");
    return {
        {"a schedule of 50 MB",
         [=](auto& wire, auto& isOn) {
             wire.head(50 * kMegabyte);
             wire.send("<norvane><ndeck><files>");
             sendMuch(wire, 50 * kMegabyte, entry, isOn);
         }},
        {"a schedule of 50 MB whose length nobody knows",
         [=](auto& wire, auto& isOn) {
             wire.head(-1);
             wire.send("<norvane><ndeck><files>");
             sendMuch(wire, 50 * kMegabyte, entry, isOn);
         }},
        {"a head that does not end",
         [](auto& wire, auto& isOn) {
             wire.send("HTTP/1.1 200 OK\r\n");
             sendMuch(wire, 50 * kMegabyte, "X-Name: a field of the head\r\n", isOn);
         }},
        {"a field of the head that does not end",
         [](auto& wire, auto& isOn) {
             wire.send("HTTP/1.1 200 OK\r\nX-Name: ");
             sendMuch(wire, 50 * kMegabyte, "long", isOn);
         }},
        {"elements three hundred thousand deep",
         [](auto& wire, auto&) { wire.answer("<norvane><ndeck>" + QByteArray("<a>").repeated(300000)); }},
        {"a hundred thousand empty entries",
         [](auto& wire, auto&) { wire.answer(manyEntries(100000, false)); }},
        {"a hundred thousand files", [](auto& wire, auto&) { wire.answer(manyEntries(100000, true)); }},
        {"as many files as fit, none of which is there",
         [](auto& wire, auto&) { wire.answer(manyEntries(18000, true)); }},
        {"a drip without an end",
         [](auto& wire, auto& isOn) {
             wire.head(-1);
             while (isOn() && wire.send("<") && wire.pause(20)) {
             }
         }},
    };
}

} // namespace

TEST_F(HostileSignage, NamesDoNotLeadOutOfTheFolder)
{
    const QByteArray bad = "hostile content";
    const QByteArray longName = QByteArray(300, 'n') + ".png";
    const QList<QByteArray> refused = {"../escape.png",
                                       "..",
                                       ".",
                                       "../../rundata/config/system.ini",
                                       "/tmp/escape.png",
                                       "sub/escape.png",
                                       "..\\escape.png",
                                       "a\nb.png",
                                       "a\tb.png",
                                       "a\x7f"
                                       "b.png",
                                       longName,
                                       "FileList.xml",
                                       "FileList.xml.new",
                                       "display.xml",
                                       "DISPLAY.XML",
                                       "register.tmp",
                                       ".hidden.png",
                                       "escape.png.ing",
                                       "escape.png.new",
                                       ""};
    const QList<QByteArray> allowed = {
        "with space.png", "%2e%2e%2fescape.png", "$(touch escape).png", "`touch escape`.png",
        "-rf.png",        "b\xc3\xa4r.png"};
    QByteArray layouts, files;
    for (const QByteArray& name : refused) {
        layouts += layoutEntry(name);
        files += fileEntry("layout", name, bad) + fileEntry("media", name, bad);
    }
    for (const QByteArray& name : allowed)
        files += fileEntry("media", name, bad);
    files += fileEntry("media", "last.png", bad);
    HostileServer server([&](HostileServer::Wire& wire, const QByteArray& target) {
        if (target.startsWith("/service/getschedule.htm"))
            wire.answer(schedule(layouts, files));
        else if (!answerGood(wire, target))
            wire.answer(bad);
    });
    launch(server.url());
    ASSERT_TRUE(showsRed());
    const DeckFolder folder(root());
    const QStringList inUse = {"last.png", "red.png", "show.xml"};
    EXPECT_TRUE(waits(
        [&] {
            const QStringList names = folder.files();
            return std::all_of(inUse.begin(), inUse.end(),
                               [&](const QString& name) { return names.contains(name); });
        },
        kWaitMs))
        << qPrintable(folder.files().join('\n'));
    ctl({"wait", "idle", "10000"});

    for (const QByteArray& name : refused) {
        const QByteArray encoded = name.toPercentEncoding("/\\$`");
        for (const QByteArray& target : server.targets()) {
            const bool wanted = target.endsWith("filePath=" + name) || target.endsWith("filePath=" + encoded);
            EXPECT_FALSE(wanted) << target.constData();
        }
    }
    for (const QString& name : folder.files())
        EXPECT_FALSE(refused.contains(name.toUtf8())) << qPrintable(name);
    EXPECT_EQ(
        QDir(root() + "/rundata/nDeck").entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot).size(),
        0);
    EXPECT_EQ(filesOutside(root()), before);
    for (const QString& path : QStringList{root() + "/tmp/escape.png", "/tmp/escape.png", root() + "/escape"})
        EXPECT_FALSE(QFileInfo::exists(path)) << qPrintable(path);
    EXPECT_TRUE(showsRed());
}

TEST_F(HostileSignage, RepliesOfAnySizeAndShapeLeaveThePhoneAlive)
{
    const QList<Attack> all = attacks();
    std::atomic<int> current{-1};
    std::atomic<int> began{0};
    HostileServer server([&](HostileServer::Wire& wire, const QByteArray& target) {
        const int mine = current;
        if (!target.startsWith("/service/getschedule.htm")) {
            if (!answerGood(wire, target))
                wire.answer("no such file", "404 Not Found");
        } else if (mine < 0) {
            wire.answer(schedule());
        } else {
            ++began;
            all[mine].run(wire, [&] { return current == mine && !wire.isOver(); });
        }
    });
    launch(server.url());
    ASSERT_TRUE(showsRed());
    for (int i = 0; i < all.size(); ++i) {
        const qint64 peakBefore = statusKiB(pid(), "VmHWM");
        began = 0;
        current = i;
        const qint64 slowest = slowestAnswer(began);
        const qint64 peak = statusKiB(pid(), "VmHWM");
        printf("%s: slowest answer %lld ms, peak grew by %lld KiB to %lld\n", all[i].name,
               static_cast<long long>(slowest), static_cast<long long>(peak - peakBefore),
               static_cast<long long>(peak));
        EXPECT_LT(slowest, kAnswerMs) << all[i].name;
        EXPECT_LT(peak - peakBefore, kGrowthKiB) << all[i].name;
    }
    current = -1;
    EXPECT_TRUE(showsRed());
    EXPECT_EQ(filesOutside(root()), before);
}

TEST(HostileMedia, AReplyThatWouldFillTheDiskIsCut)
{
    HostileServer server([](HostileServer::Wire& wire, const QByteArray& target) {
        if (target.startsWith("/service/getschedule.htm")) {
            // It says that it is small.
            wire.answer(schedule("", fileEntry("media", "endless.mp4", "never ends", "10") +
                                         fileEntry("media", "large.mp4", "large", "3145728") +
                                         fileEntry("media", "small.mp4", "small")));
        } else if (valueOf(target, "filePath") == "endless.mp4") {
            wire.head(-1);
            sendMuch(wire, 64 * kMegabyte, "0123456789abcdef", [&] { return !wire.isOver(); });
        } else if (valueOf(target, "filePath") == "small.mp4") {
            wire.answer("small");
        } else if (!answerGood(wire, target)) {
            wire.answer(QByteArray(3 << 20, 'l'));
        }
    });
    // The phone keeps 16 MiB free, and no file may have more than 8.
    const struct
    {
        qint64 disk, room;
        bool largeFits;
    } disks[] = {{18 * kMegabyte, 2 * kMegabyte, false}, {200 * kMegabyte, 16 * kMegabyte, true}};
    for (const auto& disk : disks) {
        SyncPeer peer(server.url());
        const int before = server.requestsFor("endless.mp4");
        const int largeBefore = server.requestsFor("large.mp4");
        ASSERT_TRUE(peer.start(disk.disk));
        const DeckFolder folder(peer.root());
        qint64 most = 0;
        EXPECT_TRUE(waits(
            [&] {
                most = qMax(most, folder.size());
                return folder.files().contains("small.mp4") && peer.shows() == "#dc1e1e" &&
                       server.requestsFor("endless.mp4") - before >= 4;
            },
            kWaitMs))
            << qPrintable(folder.files().join(' ')) << ", " << server.requestsFor("endless.mp4") - before;
        EXPECT_TRUE(waits([&] { return folder.size() < kMegabyte; }, kWaitMs)) << folder.size();
        EXPECT_LE(most, disk.room + kMegabyte / 4);
        EXPECT_EQ(server.requestsFor("large.mp4") - largeBefore > 0, disk.largeFits);
        EXPECT_FALSE(folder.files().contains("endless.mp4"));
        EXPECT_TRUE(peer.runs());
        printf("a disk of %lld MiB: the folder had at most %lld KiB\n",
               static_cast<long long>(disk.disk / kMegabyte), static_cast<long long>(most >> 10));
    }
}
