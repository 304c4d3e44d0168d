#include "host/look/look.h"
#include "support/host/desktop.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

namespace {

constexpr int kSteps = 8;
constexpr QRect kTrack(250, 330, 300, 6);
constexpr QRect kTextRect(100, 348, 600, 32);
constexpr QRect kNameRect(0, 232, look::kScreenWidth, 52);
constexpr int kTileTop = 112;

} // namespace

frmLoading::frmLoading(QWidget* parent) : QWidget(parent, Qt::FramelessWindowHint)
{
    setObjectName("frmLoading");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(0, 0, look::kScreenWidth, look::kScreenHeight);
}

void frmLoading::setText(const QString& text)
{
    m_strText = text;
    m_nStep = std::min(m_nStep + 1, kSteps);
    // The step that follows keeps the thread busy, so this is painted at once.
    repaint(kTrack | kTextRect);
}

QString frmLoading::text() const
{
    return m_strText;
}

void frmLoading::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    look::paintLeftBar(painter, rect());
    painter.setPen(QColor(look::kTextOnBar));
    if (event->rect().intersects(kNameRect)) { // not at a step
        const QPixmap tile = GetImageManager()->GetImage(HX_THEME("menu/menu_videoset.png"));
        painter.drawPixmap((width() - tile.width()) / 2, kTileTop, tile);
        look::paintFitted(painter, kNameRect, Qt::AlignCenter, qTranslate("Video Phone"),
                          look::font(32, true));
    }
    look::paintBox(painter, kTrack, 3, 0x33ffffff);
    QRect done = kTrack;
    done.setWidth(kTrack.width() * m_nStep / kSteps);
    if (m_nStep > 0)
        look::paintBox(painter, done, 3, look::kBlue);
    painter.setPen(QColor(look::kTextOnBar));
    look::paintFitted(painter, kTextRect, Qt::AlignCenter, m_strText, look::font(look::kTextSize));
}
