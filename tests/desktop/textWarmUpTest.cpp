// The rich-text engine of a phone that shows signage is ready before the first text, and of no other phone.
#include "host/desktop/textWarmUp.h"
#include "host/desktop/displayClient.h"
#include "host/screen/screenState.h"
#include "host/widgets/webPlugin.h"
#include "support/host/phone.h"
#include "support/host/webview.h"
#include "tests/desktop/signageStand.h"
#include "tests/kit/plain/processes.h"
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <memory>

namespace {

constexpr int kEngineMs = 60000; // in real time, on a busy machine
constexpr int kIdle = textWarmUp::IDLE_MS;

// What the turns of the event loop took of the thread's processor time that a person might notice, in
// milliseconds. Processor time: the machine of a test is busy with others.
class TurnMeter
{
public:
    TurnMeter() : m_before(now()) {}
    // At each turn.
    void look()
    {
        const double time = now();
        if (time - m_before > kShort)
            m_sum += time - m_before;
        m_before = time;
    }
    double sum() const { return m_sum; }

private:
    static constexpr double kShort = 2;
    static double now()
    {
        timespec time = {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
    }
    double m_before;
    double m_sum = 0;
};

class TextWarmUp : public SignageTest
{
protected:
    TextWarmUp()
    {
        window.setGeometry(0, 0, 800, 480);
        window.show();
        kit::settle();
    }
    // The host looks after the client, and the client is on.
    void start(int on = 1)
    {
        displayClient::instance().start();
        if (on)
            switchClient(1);
        warmUp = std::make_unique<textWarmUp>(nullptr);
    }
    static webPlugin& plugin() { return webPlugin::instance(); }
    static bool isStarted() { return !qEnvironmentVariableIsEmpty("QTWEBENGINE_CHROMIUM_FLAGS"); }
    static bool becomesWarm(TurnMeter* meter = nullptr)
    {
        return kit::waitUntil(
            [meter] {
                if (meter)
                    meter->look();
                return plugin().isWarm();
            },
            kEngineMs);
    }
    bool showsText(TurnMeter* meter = nullptr)
    {
        QWebView view(&window);
        bool isThere = false;
        QObject::connect(&view, &QWebView::loadFinished, [&isThere](bool ok) { isThere = ok; });
        view.setGeometry(100, 100, 400, 200);
        view.setHtml("<body style='background:red'>Hello</body>");
        view.show();
        return kit::waitUntil(
                   [&] {
                       if (meter)
                           meter->look();
                       return isThere;
                   },
                   kEngineMs) &&
               kit::waitUntil([] { return QColor(kit::screen().pixel(400, 250)) == QColor(Qt::red); },
                              kEngineMs);
    }
    QWidget window{nullptr, Qt::FramelessWindowHint};
    std::unique_ptr<textWarmUp> warmUp;
};

} // namespace

TEST_F(TextWarmUp, APhoneWithoutSignageLoadsNothing)
{
    start(0);
    kit::stepTime(10 * 60000);
    EXPECT_EQ(plugin().state(), webPlugin::IDLE);
    switchClient(1);
    kit::stepTime(2 * kIdle);
    EXPECT_NE(plugin().state(), webPlugin::IDLE);
}

TEST_F(TextWarmUp, TheFirstTextHoldsTheThreadUpForLessThanTheWarmUpThatCameBeforeIt)
{
    start();
    kit::stepTime(kIdle - 1000);
    EXPECT_EQ(plugin().state(), webPlugin::IDLE);
    TurnMeter warming;
    ASSERT_TRUE(becomesWarm(&warming));
    TurnMeter first;
    ASSERT_TRUE(showsText(&first));
    printf("held up for %.1f ms while warming, for %.1f ms at the first text\n", warming.sum(), first.sum());
    EXPECT_LT(first.sum(), warming.sum());
}

TEST_F(TextWarmUp, ATouchComesFirst)
{
    start();
    kit::stepTime(kIdle + 500);
    ASSERT_TRUE(kit::waitUntil([] { return plugin().state() == webPlugin::READY; }, kEngineMs));
    ASSERT_FALSE(isStarted());
    for (int i = 0; i < 5; ++i) {
        kit::tap(QPoint(20, 20));
        kit::stepTime(kIdle - 1000);
        ASSERT_FALSE(isStarted()) << i;
    }
    kit::stepTime(1500);
    EXPECT_TRUE(isStarted());
    EXPECT_TRUE(becomesWarm());
}

TEST_F(TextWarmUp, ACallComesFirst)
{
    start();
    phone_CallNumber("1001", -1, -1);
    ASSERT_GT(phone_GetCallTotal(), 0);
    screenState::instance().setIdle(kIdle);
    kit::stepTime(2 * kIdle);
    ASSERT_GT(phone_GetCallTotal(), 0);
    EXPECT_EQ(plugin().state(), webPlugin::IDLE);
}

TEST_F(TextWarmUp, TheEngineIsWarmedAgainWhenItsProcessHasEnded)
{
    start();
    kit::stepTime(kIdle + 500);
    ASSERT_TRUE(becomesWarm());
    ASSERT_NE(kit::textProcess(), 0);
    kill(kit::textProcess(), SIGKILL);
    ASSERT_TRUE(kit::waitUntil([] { return !plugin().isWarm(); }, kEngineMs));
    kit::stepTime(kIdle + 500);
    EXPECT_TRUE(becomesWarm());
    EXPECT_TRUE(showsText());
}
