#include "host/desktop/dialLines.h"
#include "host/desktop/lineName.h"
#include "host/look/look.h"
#include "host/services/phone/tagCall.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "support/host/ui.h"
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace {

constexpr int kGap = 6;
constexpr int kUsualCount = 5; // with the analogue line they are narrower
constexpr int kCorner = 10;
constexpr int kNameSize = 16;
constexpr int kNarrowGap = 4;
constexpr int kNarrowNameSize = 14;
constexpr int kNumberSize = 14;
constexpr int kRingRoom = 3;
constexpr QRgb kPale = 0xff9fb1c2;
constexpr QRgb kChosenTop = 0xff4a93f3;

bool isReady(LINE_STATE state)
{
    return state == LINE_REGISTERED || state == LINE_DEFAULT_ACCOUNT;
}

} // namespace

dialLines::dialLines(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    phone_RegAccountNotify(this, -1);
    qFollowLanguage(this, [this] { refresh(); });
}

dialLines::~dialLines()
{
    phone_UnRegAccountNotify(this, -1);
}

int dialLines::TryThreadMessage(msgObject& msg)
{
    if (msg.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH && isVisible())
        refresh();
    return 0;
}

QList<dialLines::tagLine> dialLines::readLines() const
{
    QList<tagLine> lines{{-1, lineName(-1), QString(), true}};
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        tagAccountInfo info;
        phone_GetAccountInfoById(index, &info);
        const bool ready = isReady(info.eState);
        const QString user = QString::fromUtf8(info.szUser);
        const bool failed = info.eState == LINE_REGISTER_FAILED && !user.isEmpty();
        const QString why = qTranslate(failed ? HX_TR("Failed") : HX_TR("Off"));
        lines.append({index, lineName(index), ready ? user : why, ready});
    }
    if (phone_GetPSTNEnable())
        lines.append({PHONE_LINE_PSTN, lineName(PHONE_LINE_PSTN), QString(), true});
    return lines;
}

void dialLines::refresh()
{
    m_lines = readLines();
    setLine(m_nLine);
}

void dialLines::setLine(int line)
{
    m_nLine = -1;
    for (const tagLine& known : std::as_const(m_lines)) {
        if (known.nLine == line && known.bReady)
            m_nLine = line;
    }
    update();
}

QString dialLines::text() const
{
    QStringList all;
    for (const tagLine& line : m_lines)
        all.append((line.nLine == m_nLine ? "*" : "") + line.strName +
                   (line.strNumber.isEmpty() ? QString() : ' ' + line.strNumber));
    return all.join('|');
}

QRect dialLines::place(int index) const
{
    const int count = int(m_lines.size());
    const int gap = count > kUsualCount ? kNarrowGap : kGap;
    const int width = (this->width() - 2 * kRingRoom - (count - 1) * gap) / qMax(1, count);
    return QRect(kRingRoom + index * (width + gap), kRingRoom, width, height() - 2 * kRingRoom);
}

void dialLines::showEvent(QShowEvent*)
{
    refresh();
}

void dialLines::mousePressEvent(QMouseEvent* event)
{
    for (int index = 0; index < m_lines.size(); ++index) {
        if (place(index).contains(event->position().toPoint()) && m_lines[index].bReady)
            setLine(m_lines[index].nLine);
    }
}

void dialLines::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Left || event->key() == Qt::Key_Right)
        step(event->key() == Qt::Key_Right ? 1 : -1);
    else
        QWidget::keyPressEvent(event);
}

// To the next one that can be chosen, and round.
void dialLines::step(int way)
{
    const int count = int(m_lines.size());
    int at = 0;
    for (int index = 0; index < count; ++index) {
        if (m_lines[index].nLine == m_nLine)
            at = index;
    }
    do {
        at = (at + way + count) % count;
    } while (!m_lines[at].bReady);
    setLine(m_lines[at].nLine);
}

void dialLines::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const int nameSize = m_lines.size() > kUsualCount ? kNarrowNameSize : kNameSize;
    for (int index = 0; index < m_lines.size(); ++index) {
        const tagLine& line = m_lines[index];
        const QRect box = place(index);
        const bool chosen = line.nLine == m_nLine;
        look::paintBox(painter, box, kCorner,
                       chosen        ? kChosenTop
                       : line.bReady ? look::kField
                                     : look::kFieldDisabled,
                       chosen ? look::kBlue : look::kPanelLine);
        if (chosen && hasFocus())
            look::paintRing(painter, box, kCorner);
        painter.setPen(look::colour(chosen ? look::kTextOnBar : line.bReady ? look::kText : kPale));
        const bool two = !line.strNumber.isEmpty();
        const QRect name = two ? box.adjusted(1, 10, -1, -box.height() / 2 + 4) : box.adjusted(1, 3, -1, -3);
        look::paintFitted(painter, name, Qt::AlignCenter, line.strName, look::font(nameSize, true));
        if (two) {
            painter.setFont(look::font(kNumberSize));
            const QRect number = box.adjusted(4, box.height() / 2, -4, -8);
            painter.drawText(
                number, Qt::AlignCenter,
                painter.fontMetrics().elidedText(line.strNumber, Qt::ElideRight, number.width()));
        }
    }
}
