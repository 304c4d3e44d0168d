#include "host/look/look.h"
#include "host/screen/screenState.h"
#include "host/widgets/lampMark.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/bars.h"
#include <QPainter>

namespace {
constexpr int kSideMargin = 8;
constexpr int kLampFromRight = 20;

// Left of what a page has put over the end of its bar; what is as wide as the page lies elsewhere.
int lampX(const QWidget& bar)
{
    int x = bar.width() - kLampFromRight;
    const QWidget* page = bar.parentWidget();
    if (!page)
        return x;
    for (const QWidget* over : page->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        const QRect place = over->geometry().translated(-bar.pos());
        const bool isAtEnd = place.left() > bar.width() / 2 && place.contains(x, bar.height() / 2);
        if (over != &bar && over->isVisible() && isAtEnd)
            x = place.left() - kLampMarkSize / 2;
    }
    return x;
}

} // namespace

qTopBar::qTopBar(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(look::kScreenWidth, look::kTopBarHeight);
    connect(&screenState::instance(), &screenState::lampChanged, this, qOverload<>(&QWidget::update));
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
    const int x = lampX(*this);
    const int margin = screenState::instance().isLampLit() ? width() - x + kLampMarkSize : kSideMargin;
    look::paintFitted(painter, rect().adjusted(margin, 0, -margin, 0), Qt::AlignCenter, m_strTitle,
                      look::font(look::kTitleSize, true));
    paintLampMark(painter, QPoint(x, height() / 2));
}

qTopBar* qReplaceTopBar(QWidget* placeholder, const char* title)
{
    qTopBar* bar = replacePlaceholder<qTopBar>(placeholder);
    if (bar && title)
        bar->setTitle(QString::fromUtf8(title));
    return bar;
}
