#include "host/desktop/homeClock.h"
#include "host/desktop/clockText.h"
#include "host/look/look.h"
#include "support/host/clock.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/text.h"
#include <QPainter>

namespace {

constexpr int kSecondsPerMinute = 60;
constexpr int kTimeSize = 80;
constexpr int kHalfSize = 28;
constexpr int kHalfGap = 12; // between the time and its half of the day
constexpr int kDateSize = 20;

const char* const kDays[] = {HX_TR("Sunday"),   HX_TR("Monday"), HX_TR("Tuesday"), HX_TR("Wednesday"),
                             HX_TR("Thursday"), HX_TR("Friday"), HX_TR("Saturday")};
const char* const kMonths[] = {HX_TR("January"),   HX_TR("February"), HX_TR("March"),    HX_TR("April"),
                               HX_TR("May"),       HX_TR("June"),     HX_TR("July"),     HX_TR("August"),
                               HX_TR("September"), HX_TR("October"),  HX_TR("November"), HX_TR("December")};

// The language says how a date is written: %1 day of the week, %2 day, %3 month.
QString dateText(const chTime& time)
{
    return qTranslate("%1, %2 %3")
        .arg(qTranslate(kDays[time.GetDayOfWeek()]), QString::number(time.GetDay()),
             qTranslate(kMonths[time.GetMonth() - 1]));
}

} // namespace

homeClock::homeClock(QWidget* parent) : QWidget(parent)
{
    setObjectName("homeClock");
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void homeClock::refresh()
{
    const long minute = netGetLocalTime() / kSecondsPerMinute;
    const bool twelveHours = clockHasTwelveHours();
    if (minute == m_nShownMinute && twelveHours == m_bTwelveHours)
        return;
    m_nShownMinute = minute;
    m_bTwelveHours = twelveHours;
    update();
}

QString homeClock::timeText(const chTime& now) const
{
    return m_bTwelveHours ? clockTwelveHours(now) : toQString(now.Format("%H:%M"));
}

QString homeClock::text() const
{
    return timeText(chTime(m_nShownMinute * kSecondsPerMinute));
}

void homeClock::paintTime(QPainter& painter, const chTime& now) const
{
    QRect row(0, 0, width(), 96);
    painter.setFont(look::font(kTimeSize));
    if (!m_bTwelveHours) {
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, timeText(now));
        return;
    }
    // The language says whether the half of the day comes before or after the time.
    const QString whole = clockHalfOfDay(now);
    const QString half = QString(whole).remove(QStringLiteral("%1")).trimmed();
    const bool isBefore = whole.endsWith(QStringLiteral("%1"));
    const int halfWidth = QFontMetrics(look::font(kHalfSize)).horizontalAdvance(half);
    if (isBefore)
        row.setLeft(halfWidth + kHalfGap);
    QRect taken;
    painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, timeText(now), &taken);
    const QRect place(isBefore ? 0 : taken.right() + kHalfGap, taken.top(), halfWidth + 1,
                      taken.height() - 16);
    look::paintFitted(painter, place, Qt::AlignLeft | Qt::AlignBottom, half, look::font(kHalfSize));
}

void homeClock::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(QColor(look::kTextOnBar));
    const chTime now(netGetLocalTime());
    paintTime(painter, now);
    look::paintFitted(painter, QRect(0, 94, width(), 36), Qt::AlignLeft | Qt::AlignVCenter, dateText(now),
                      look::font(kDateSize));
}
