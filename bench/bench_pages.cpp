// How long a person waits for a page: first and cached opens to painted, the boot pre-building, and a list of
// thousands of pictures.
#include "applets/appletPages.h"
#include "bench/phoneBench.h"
#include "bench/threadWatch.h"
#include "calibration/calibrationPages.h"
#include "frame/moduleEntries.h"
#include "frame/pageClass.h"
#include "host/desktop/boot.h"
#include "host/look/look.h"
#include "host/services/messages/messageBus.h"
#include "media/mediaPages.h"
#include "settings/call/callPages.h"
#include "settings/call/dlgDialPlan.h"
#include "settings/call/dlgSpeedDial.h"
#include "settings/personal/personalPages.h"
#include "settings/system/systemPages.h"
#include "support/file/deviceRoot.h"
#include "support/host/desktop.h"
#include "support/host/screen.h"
#include "tests/kit/plain/deviceFolder.h"
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QKeyEvent>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QWidget>
#include <algorithm>
#include <functional>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kCachedOpens = 500;
constexpr int kPictures = 5000;
constexpr double kLongestWaitMs = 5000;
constexpr double kFirstMs = 20;
constexpr double kFirstWithListsMs = 25; // pages of keys, pictures and lines

// When a window of the class has painted itself: the page may lie wholly under an opaque child, which paints
// instead.
std::function<bool(const QWidget*)> isOf(const char* className)
{
    return [className](const QWidget* widget) { return widget->window()->inherits(className); };
}

// What menus open by its name, and what the host or the calibration's question makes.
void openPage(const char* page)
{
    if (qstrcmp(page, "Speed Dial") == 0) {
        screenBringUp(getSpeedDialDialog());
    } else if (qstrcmp(page, "Dial Plan") == 0) {
        static dlgDialPlan* plan = new dlgDialPlan(nullptr, nullptr);
        screenBringUp(plan);
    } else if (qstrcmp(page, "LCD Adjusting") == 0) {
        PageClass::Find("dlgCalibration")->Open(0, 1);
    } else {
        settingOpenPage(chString(page), nullptr);
    }
}

void waitForPaint(const PaintWatch& watch, const CostClock& clock)
{
    while (!watch.hasPainted() && clock.cost().waited < kLongestWaitMs)
        QCoreApplication::processEvents();
}

tagCost openToPainted(const char* page, const char* className)
{
    const PaintWatch watch(isOf(className));
    const CostClock clock;
    openPage(page);
    waitForPaint(watch, clock);
    // The rest of the page's children paint within the same pass.
    QCoreApplication::processEvents();
    return clock.cost();
}

// With what it has told in boxes.
void closeTop(const char* className)
{
    for (QWidget* window : QWSServer::clientWindows()) {
        if (window->inherits(className) || window->inherits("BoxDialog"))
            window->close();
    }
    QCoreApplication::processEvents();
}

void benchPage(RatioTable& table, const char* page, const char* className, double firstMs = kFirstMs)
{
    const tagCost first = openToPainted(page, className);
    table.add(QString("%1: first open to painted").arg(page), first.waited, firstMs, "ms");
    table.add(QString("%1: processor time of it").arg(page), first.worked, firstMs, "ms");
    closeTop(className);
    std::vector<tagCost> opens;
    for (int i = 0; i < kCachedOpens; ++i) {
        opens.push_back(openToPainted(page, className));
        closeTop(className);
    }
    table.add(QString("%1: cached open to painted, 99th percentile of %2").arg(page).arg(kCachedOpens),
              percentile99(opens, &tagCost::waited), 8, "ms");
    table.add(QString("%1: processor time of it, 99th percentile").arg(page),
              percentile99(opens, &tagCost::worked), 8, "ms");
}

struct tagBenchPage
{
    const char* szName;
    const char* szClass;
    double firstMs = kFirstMs;
};

const tagBenchPage kPages[] = {
    {"WAN", "dlgWan"},
    {"Account Setting", "dlgAccount_Setting_Btn"},
    {"Status", "dlgStatus"},
    {"Version Detail", "dlgVersion_Detail"},
    {"Date & Time", "dlgDateAndTime"},
    {"Security", "dlgSecurity"},
    {"LCD Adjusting", "dlgCalibration"},
    {"Sound Manager", "dlgMediaManager"},
    {"Sound Set", "dlgSound"},
    {"Screen Saver", "dlgScreenSaver"},
    {"Personalize", "dlgPhone_Setting"},
    {"Auto Provision", "dlgAutoServer"},
    {"DSS Key", "dlgDssKeyList", kFirstWithListsMs},
    {"Picture-dial Setting", "dlgPictureDialSetting", kFirstWithListsMs},
    {"Auto Answer", "dlgAuto_Answer", kFirstWithListsMs},
    {"Anonymous Call", "dlgAnonymousCallDialog", kFirstWithListsMs},
    {"Video Set", "dlgVideoSet", kFirstWithListsMs},
    {"Speed Dial", "dlgSpeedDial"},
    {"Dial Plan", "dlgDialPlan"},
    {"Forward", "dlgForward_Setting"},
    {"Hotline", "dlgHotline"},
    {"Call Waiting", "dlgCall_Waiting"},
    {"Key As Send", "dlgKey_As_Send"},
    {"Voice Mail", "dlgVoice_Mail_Setting"},
    {"Door Phone1", "dlgDoorPhone"},
};

// They ask a server that is not there, and say so in boxes.
const tagBenchPage kApplets[] = {{"Weather", "dlgWeather"}, {"Stock", "dlgStock"}};

// A folder of so many pictures, which are one file.
void putPictures(const QString& root)
{
    const QString folder = root + "/rundata/media/image/";
    QDir().mkpath(folder);
    QImage picture(320, 240, QImage::Format_RGB32);
    picture.fill(0xff2060a0);
    picture.save(folder + "0000.png");
    for (int i = 1; i < kPictures; ++i)
        link((folder + "0000.png").toUtf8(),
             (folder + QString("%1.png").arg(i, 4, 10, QChar(u'0'))).toUtf8());
}

// One key, until the list has painted the row that it leads to.
tagCost step(int key)
{
    const PaintWatch watch(isOf("dlgMediaManager"));
    const CostClock clock;
    QWidget* focus = QApplication::focusWidget();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(focus, &press);
    waitForPaint(watch, clock);
    return clock.cost();
}

void benchManyPictures(RatioTable& table)
{
    const tagCost first = openToPainted("Photo Manager", "dlgMediaManager");
    table.add(QString("%1 pictures: open to painted").arg(kPictures), first.waited, 100, "ms");
    table.add("processor time of it", first.worked, 100, "ms");
    // The rows to come are there when a turn has nothing left to do.
    QElapsedTimer rest;
    rest.start();
    const QTableWidget* list = QApplication::activeWindow()->findChild<QTableWidget*>();
    double longest = 0;
    while (list->rowCount() < kPictures && rest.elapsed() < 5000) {
        const CostClock turn;
        QCoreApplication::processEvents();
        longest = std::max(longest, turn.cost().worked);
    }
    table.add("all rows after it", double(rest.nsecsElapsed()) / 1e6, 1000, "ms");
    table.add("the longest turn meanwhile", longest, 16, "ms");
    std::vector<tagCost> steps;
    for (int i = 0; i < kPictures; ++i)
        steps.push_back(step(Qt::Key_Down));
    for (int i = 0; i < 20; ++i)
        steps.push_back(step(i % 2 ? Qt::Key_Down : Qt::Key_Up)); // round at the ends
    table.add("a step through them, 99th percentile", percentile99(steps, &tagCost::waited), 16, "ms");
    table.add("processor time of it, 99th percentile", percentile99(steps, &tagCost::worked), 16, "ms");
    closeTop("dlgMediaManager");
}

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir root;
    kit::fillDeviceFolder(root.path(), kit::Firmware::Link);
    deviceSetRoot(root.path().toUtf8().constData());
    hostPrepareFonts();
    QApplication application(argc, argv);
    hostApplyLook(application);
    settingsCallPages();
    settingsSystemPages();
    settingsPersonalPages();
    calibrationPages();
    mediaPages();
    appletPages();
    hostSetModule(settingEntries());
    frmDesktop::GetInstance()->m_pLoading = new frmLoading;
    frmDesktop::GetInstance()->m_pLoading->show();
    QCoreApplication::processEvents();

    RatioTable table;
    QElapsedTimer boot;
    boot.start();
    settingCacheWindows(-1);
    table.add("settingCacheWindows(-1)", double(boot.nsecsElapsed()) / 1e6, 400, "ms");
    frmDesktop::GetInstance()->FinishLoading();
    for (const tagBenchPage& page : kPages)
        benchPage(table, page.szName, page.szClass, page.firstMs);
    putPictures(root.path());
    benchManyPictures(table);
    for (const tagBenchPage& page : kApplets)
        benchPage(table, page.szName, page.szClass, page.firstMs);
    return table.print() ? 0 : 1;
}
