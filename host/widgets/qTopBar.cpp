#include "host/widgets/look.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/bars.h"
#include <QPainter>

namespace {
constexpr int kSideMargin = 8;
}

qTopBar::qTopBar(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(look::kScreenWidth, look::kTopBarHeight);
}

void qTopBar::setTitle(const QString& title)
{
    if (m_strTitle == title)
        return;
    m_strTitle = title;
    update();
}

QString qTopBar::title() const
{
    return m_strTitle;
}

void qTopBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    look::paintBar(painter, rect());
    painter.setPen(look::colour(look::kTextOnBar));
    look::paintFitted(painter, rect().adjusted(kSideMargin, 0, -kSideMargin, 0), Qt::AlignCenter, m_strTitle,
                      look::font(look::kTitleSize, true));
}

qTopBar* qReplaceTopBar(QWidget* placeholder, const char* title)
{
    qTopBar* bar = replacePlaceholder<qTopBar>(placeholder);
    if (bar && title)
        bar->setTitle(QString::fromUtf8(title));
    return bar;
}
