#include "bench/callScreen.h"
#include "bench/callPhone.h"
#include "host/services/transfers/taskBook.h"
#include "support/host/screen.h"
#include <QAbstractButton>
#include <QApplication>
#include <QBackingStore>
#include <QImage>
#include <QLabel>
#include <cmath>

namespace {

constexpr int kLooksGreen = 60; // more of it than of the other colours
constexpr int kGreenDisc = 1500;
constexpr int kRestMs = 50;

QWidget* windowOf(const char* className)
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->inherits(className))
            return window;
    }
    return nullptr;
}

} // namespace

QWidget* topWindow()
{
    return QWSServer::clientWindows().value(0);
}

QPoint middleOf(const QWidget* widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

CallScreen::CallScreen()
    : m_pWindow(windowOf("frmCall")), m_pAnswer(m_pWindow->findChild<QAbstractButton*>("btnAnswer")),
      m_pName(m_pWindow->findChild<QLabel*>("labName")), m_pState(m_pWindow->findChild<QLabel*>("labState"))
{
}

bool CallScreen::isGone() const
{
    return !m_pWindow->isVisible();
}

QPoint CallScreen::answerKey() const
{
    return middleOf(m_pAnswer);
}

bool CallScreen::rings(const QString& name) const
{
    return m_pAnswer->isVisible() && m_pName->text() == name;
}

bool CallScreen::talks() const
{
    return !m_pAnswer->isVisible() && m_pState->text() == "In call";
}

bool CallScreen::hasAnswerKey() const
{
    const auto* image = dynamic_cast<const QImage*>(m_pWindow->backingStore()->paintDevice());
    if (!image || topWindow() != m_pWindow)
        return false;
    int green = 0;
    const QRect disc = m_pAnswer->geometry();
    for (int y = disc.top(); y <= disc.bottom(); ++y) {
        for (int x = disc.left(); x <= disc.right(); ++x) {
            const QRgb pixel = image->pixel(x, y);
            green += qGreen(pixel) > qMax(qRed(pixel), qBlue(pixel)) + kLooksGreen;
        }
    }
    return green >= kGreenDisc;
}

tagCost untilPainted(const CallScreen& screen, TurnWatch& turns, const std::function<void()>& act,
                     const std::function<bool()>& says)
{
    PaintWatch watch([&](const QWidget* widget) { return widget->window() == screen.window() && says(); });
    const CostClock clock;
    act();
    const bool isPainted = turns.turnUntil([&] { return watch.hasPainted(); });
    return isPainted ? clock.cost() : tagCost{HUGE_VAL, HUGE_VAL};
}

void endCall(const CallScreen& screen, TurnWatch& turns)
{
    for (int touch = 0; touch < 2; ++touch) { // it goes at once when the call has ended
        touchSoftKey(CallScreen::END_KEY);
        turns.turnFor(kRestMs);
    }
    turns.turnUntil([&] { return screen.isGone() && taskPendingCount() == 0; });
}
