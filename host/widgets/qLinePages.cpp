#include "host/look/look.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/linepages.h"
#include <QChildEvent>
#include <QStackedWidget>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {

constexpr int kTabGap = 4; // between the tabs and the page

// A page that comes after its tab was chosen is shown as soon as it is there.
class LatePages : public QObject
{
public:
    LatePages(QTabWidget* tabs, QStackedWidget* pages) : QObject(pages), m_pTabs(tabs), m_pPages(pages)
    {
        pages->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ChildAdded)
            QMetaObject::invokeMethod(this, &LatePages::show, Qt::QueuedConnection);
        return false;
    }

private:
    void show() { m_pPages->setCurrentIndex(m_pTabs->currentIndex()); }
    QTabWidget* m_pTabs;
    QStackedWidget* m_pPages;
};

} // namespace

qLineBodyWidget::qLineBodyWidget(QWidget* parent) : QWidget(parent) {}

void qLineBodyWidget::LoadLineInfo(int) {}

QWidget* qLineBodyWidget::GetInvalidInput(QString&)
{
    return nullptr;
}

bool qLineBodyWidget::SaveLineInfo()
{
    return false;
}

qLinePages::qLinePages(QWidget* parent)
    : QWidget(parent), m_pTabs(new QTabWidget(this)), m_pPages(new QStackedWidget(this))
{
    QVBoxLayout* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(kTabGap);
    layout->addWidget(m_pTabs);
    layout->addWidget(m_pPages, 1);
    m_pTabs->tabBar()->setExpanding(true);
    m_pTabs->tabBar()->setUsesScrollButtons(false);
    m_pTabs->setFixedHeight(look::kTabHeight);
    new LatePages(m_pTabs, m_pPages);
    connect(m_pTabs, &QTabWidget::currentChanged, m_pPages, &QStackedWidget::setCurrentIndex);
}

void qLinePages::AddLinePage(qLineBodyWidget* page, const QString& title)
{
    m_pPages->addWidget(page);
    m_pTabs->addTab(new QWidget, title);
}

void qLinePages::ResetCurrentWgtPage(int index)
{
    m_pTabs->setCurrentIndex(index);
    m_pPages->setCurrentIndex(index);
}

qLineBodyWidget* qLinePages::GetLinePage(int index) const
{
    return qobject_cast<qLineBodyWidget*>(m_pPages->widget(index));
}

int qLinePages::GetLinePageCount() const
{
    return m_pPages->count();
}

qLinePages* qReplaceLinePages(QWidget* placeholder)
{
    return replacePlaceholder<qLinePages>(placeholder);
}
