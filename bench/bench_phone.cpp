// The running phone as a whole: its start, memory after boot, what its idle home screen costs, and what a
// layout costs that shows without moving.
#include "bench/phoneBench.h"
#include "bench/runningPhone.h"
#include "tests/kit/plain/deviceFolder.h"
#include "tests/kit/plain/processes.h"
#include "tests/kit/plain/signServer.h"
#include "tests/kit/plain/signTexts.h"
#include <QGuiApplication>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace kit;

namespace {

constexpr int kStarts = 9;
constexpr int kIdleSeconds = 60;
constexpr int kLayoutSeconds = 20;
constexpr int kRegisterSeconds = 3;     // until the server knows the phone
constexpr double kBeforeSignage = 37.3; // MB after boot of a phone that had no signage client

// Share of one core in percent.
double loadOf(const RunningPhone& phone, int seconds)
{
    const double before = cpuSeconds(phone.pid());
    QThread::sleep(unsigned(seconds));
    return 100 * (cpuSeconds(phone.pid()) - before) / seconds;
}

void setKey(const RunningPhone& phone, const QString& key, const QString& value)
{
    phone.ctl({"config", "/rundata/config/system.ini", "nDeck", key, value});
}

bool isShowing(const RunningPhone& phone, const QColor& colour)
{
    const QString shot = phone.root() + "/shot.png";
    return phone.ctl({"shot", shot}) && QImage(shot).pixelColor(600, 200) == colour;
}

// A picture that stands for ten minutes.
bool showLayout(RunningPhone& phone, SignServer& server)
{
    const QColor colour(30, 180, 60);
    server.putMedia("picture.png", signPicture(colour, QSize(800, 400)));
    // Files come into use with the change from one layout to the next.
    server.putLayout("first.xml", signLayout(signRegion(QRect(0, 0, 400, 400), signImage("picture.png", 1))));
    server.putLayout("still.xml",
                     signLayout(signRegion(QRect(0, 0, 800, 400), signImage("picture.png", 600))));
    if (!server.start())
        return false;
    setKey(phone, "strServerURL", server.url());
    setKey(phone, "strServerKey", "hall");
    setKey(phone, "strServerPwd", "secret");
    setKey(phone, "strDisplayName", "Lobby");
    setKey(phone, "bEnable", "1");
    phone.ctl({"set", "net", "state=2"});
    QThread::sleep(kRegisterSeconds);
    phone.ctl({"open-info", "Ndeck", "", "Ndeck"});
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (isShowing(phone, colour))
            return true;
        QThread::msleep(100);
    }
    return false;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Each in the same device root; the first, which fills caches, does not count.
bool measureStarts(RatioTable& table)
{
    RunningPhone phone;
    std::vector<double> ms, cpuMs;
    for (int i = 0; i <= kStarts; ++i) {
        RunningPhone::tagStart cost;
        if (!phone.startOnly(cost))
            return false;
        phone.end();
        if (i == 0)
            continue;
        ms.push_back(cost.ms);
        cpuMs.push_back(cost.cpuMs);
    }
    table.add("process start to the home screen, by the clock", median(ms), 250, "ms");
    table.add("the same, processor time of the phone", median(cpuMs), 60, "ms");
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    RatioTable table;
    RunningPhone phone;
    if (!measureStarts(table) || !phone.start()) {
        fprintf(stderr, "the phone did not start\n");
        return 1;
    }
    const double memory = residentMegabytes(phone.pid());
    table.add("memory after boot", memory, 40, "MB");
    table.add("the same, against a phone without signage and 5 MB", memory, kBeforeSignage + 5, "MB");
    table.add("idle home screen, share of one core over a minute", loadOf(phone, kIdleSeconds), 0.5, "%");
    SignServer server;
    if (!showLayout(phone, server)) {
        fprintf(stderr, "the layout does not show\n");
        return 1;
    }
    QThread::sleep(2);
    table.add("static layout, share of one core over 20 seconds", loadOf(phone, kLayoutSeconds), 1, "%");
    return table.print() ? 0 : 1;
}
