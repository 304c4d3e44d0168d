#include "host/desktop/homeStatus.h"
#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/services/phone/doNotDisturb.h"
#include "host/widgets/lampMark.h"
#include "support/host/api.h"
#include "support/host/box.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/module.h"
#include "support/host/net.h"
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace {

constexpr int kIconSize = 20;
constexpr int kLinesLeft = 14;
constexpr int kLinesRight = 640;
constexpr int kLineGap = 18;
constexpr int kLineText = 24; // from where a line begins
constexpr int kLampX = 688;
constexpr int kBellX = 652;
constexpr int kMessagesMax = 99; // that are counted one by one
constexpr int kMessagesX = 740;  // of the number, which moves left when it is wide
constexpr int kMessagesRight = 764;
constexpr int kMessageIcon = 27;            // before it
constexpr QRect kBellTouch(642, 0, 38, 40); // as a finger needs it
constexpr QRect kMessageTouch(704, 0, 56, 40);
constexpr QRgb kStrip = 0x33000000;
constexpr QRgb kLineOff = 0xb3ffffff;

QPixmap icon(const char* path)
{
    return GetImageManager()->GetImageByScale(path, kIconSize, kIconSize);
}

bool isRegistered(LINE_STATE state)
{
    return state == LINE_REGISTERED || state == LINE_DEFAULT_ACCOUNT;
}

} // namespace

bool homeStatus::State::operator==(const State& other) const
{
    return std::equal(lines, lines + PHONE_ACCOUNT_COUNT, other.lines) &&
           std::equal(on, on + PHONE_ACCOUNT_COUNT, other.on) && newMessages == other.newMessages &&
           networkUp == other.networkUp && lampOn == other.lampOn && isUndisturbed == other.isUndisturbed;
}

homeStatus::homeStatus(QWidget* parent) : QWidget(parent)
{
    setObjectName("homeStatus");
    m_state = currentState();
    screenState::instance().setMessagesWait(m_state.newMessages > 0);
    phone_RegAccountNotify(this, -1);
    connect(&screenState::instance(), &screenState::lampChanged, this, &homeStatus::refresh);
    qFollowLanguage(this, [this] { refresh(); });
}

homeStatus::~homeStatus()
{
    phone_UnRegAccountNotify(this, -1);
}

int homeStatus::TryThreadMessage(msgObject& msg)
{
    const bool isPhoneSetting = msg.message == CONFIG_MSG_BCAST_CHANGED && msg.wParam == CONFIG_CHANGED_PHONE;
    if (msg.message == PHONE_PUBLIC_MSG_ACCOUNT_REFRESH || isPhoneSetting)
        refresh();
    // Whoever else shows the lines wants it too.
    return 0;
}

homeStatus::State homeStatus::currentState()
{
    State state;
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        tagAccountInfo info;
        phone_GetAccountInfoById(index, &info);
        state.on[index] = isRegistered(info.eState);
        state.newMessages += info.nNewMessages;
        const QString user = QString::fromUtf8(info.szUser);
        state.lines[index] = user.isEmpty() ? qTranslate("Line") + " " + QString::number(index + 1) : user;
    }
    state.networkUp = netGetNetworkSta() == NET_UP;
    state.lampOn = screenState::instance().isLampLit();
    state.isUndisturbed = doNotDisturb::isOn();
    return state;
}

void homeStatus::refresh()
{
    const State now = currentState();
    if (now == m_state)
        return;
    m_state = now;
    screenState::instance().setMessagesWait(now.newMessages > 0);
    update();
}

void homeStatus::toggleDoNotDisturb()
{
    if (!doNotDisturb::setOn(!doNotDisturb::isOn()))
        xMessageBox(Translate("Note"), Translate(HX_TR("The settings cannot be saved!")), BOX_NOTE, this, -1);
    refresh();
}

void homeStatus::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    if (kBellTouch.contains(at))
        toggleDoNotDisturb();
    else if (m_state.newMessages > 0 && kMessageTouch.contains(at))
        hostModule().openPage(chString("Message"), nullptr);
}

QString homeStatus::lineText(int index) const
{
    return m_state.lines[index];
}

// What the short names leave is shared by the long ones.
int homeStatus::widthOfLongLines(const QFontMetrics& metrics) const
{
    QList<int> widths;
    for (const QString& line : m_state.lines)
        widths.append(metrics.horizontalAdvance(line));
    std::sort(widths.begin(), widths.end());
    int room = kLinesRight - kLinesLeft - PHONE_ACCOUNT_COUNT * (kLineText + kLineGap) + kLineGap;
    int share = room;
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        share = room / (PHONE_ACCOUNT_COUNT - index);
        room -= qMin(widths[index], share);
    }
    return share;
}

QString homeStatus::shownLine(int index) const
{
    const QFontMetrics metrics(look::font(look::kSmallSize));
    return metrics.elidedText(m_state.lines[index], Qt::ElideRight, widthOfLongLines(metrics) + 1);
}

bool homeStatus::isLineOn(int index) const
{
    return m_state.on[index];
}

void homeStatus::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor::fromRgba(kStrip));
    painter.setFont(look::font(look::kSmallSize));
    int x = kLinesLeft;
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index)
        x = paintLine(painter, x, index);
    paintRight(painter);
}

// The x at which the next line begins.
int homeStatus::paintLine(QPainter& painter, int x, int index)
{
    const bool on = m_state.on[index];
    painter.drawPixmap(x - 1, (height() - kIconSize) / 2,
                       icon(on ? HX_THEME("icon/status_line_on.png") : HX_THEME("icon/status_line_off.png")));
    painter.setPen(QColor::fromRgba(on ? look::kTextOnBar : kLineOff));
    const QString text = shownLine(index);
    const int width = painter.fontMetrics().horizontalAdvance(text);
    painter.drawText(QRect(x + kLineText, 0, width + 2, height()), Qt::AlignVCenter | Qt::AlignLeft, text);
    return x + kLineText + width + kLineGap;
}

void homeStatus::paintRight(QPainter& painter)
{
    const int top = (height() - kIconSize) / 2;
    painter.setPen(QColor(look::kTextOnBar));
    painter.drawPixmap(766, top,
                       icon(m_state.networkUp ? HX_THEME("icon/status_network.png")
                                              : HX_THEME("icon/status_network_off.png")));
    painter.drawPixmap(kBellX, top,
                       icon(m_state.isUndisturbed ? HX_THEME("icon/status_disturb_off.png")
                                                  : HX_THEME("icon/status_bell.png")));
    paintLampMark(painter, QPoint(kLampX, height() / 2));
    if (m_state.newMessages > 0) {
        const QString count =
            m_state.newMessages > kMessagesMax ? QStringLiteral("99+") : QString::number(m_state.newMessages);
        const int left =
            std::min(kMessagesX, kMessagesRight - painter.fontMetrics().horizontalAdvance(count));
        painter.drawPixmap(left - kMessageIcon, top, icon(HX_THEME("icon/status_message.png")));
        painter.drawText(QRect(left, 0, kMessagesRight - left, height()), Qt::AlignVCenter | Qt::AlignLeft,
                         count);
    }
}
