#include "host/desktop/hostList.h"
#include "support/host/image.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QTableWidget>

namespace {

constexpr int kRowHeight = 53;
constexpr int kHeadingHeight = 40;
constexpr int kIconSize = 24;

} // namespace

hostList::hostList(QTableWidget* table, QLabel* notice, const QList<tagListColumn>& columns)
    : QObject(table), m_pTable(table), m_pViewport(table->viewport()), m_pNotice(notice), m_columns(columns)
{
    SetTabWgtNormalProperty(table, true);
    SetTabWgtScrollStyle(table);
    table->setColumnCount(int(columns.size()));
    table->setIconSize(QSize(kIconSize, kIconSize));
    for (int column = 0; column < columns.size(); ++column)
        table->setColumnWidth(column, columns[column].nWidth);
    table->horizontalHeader()->setStretchLastSection(true);
    table->horizontalHeader()->setFixedHeight(kHeadingHeight);
    table->horizontalHeader()->setSectionsClickable(false);
    table->verticalHeader()->setDefaultSectionSize(kRowHeight);
    notice->setAttribute(Qt::WA_TransparentForMouseEvents);
    notice->hide();
    table->installEventFilter(this);
    m_pViewport->installEventFilter(this);
    showTexts();
    qFollowLanguage(table, [this] { showTexts(); });
}

// Headings and notice.
void hostList::showTexts()
{
    QStringList headings;
    for (const tagListColumn& column : m_columns)
        headings.append(qTranslate(column.szHeading));
    m_pTable->setHorizontalHeaderLabels(headings);
    m_pNotice->setText(qTranslate(m_szNotice));
}

void hostList::setRows(const QList<tagListRow>& rows, const char* notice)
{
    const int current = qMax(0, m_pTable->currentRow());
    qResetTableWidgetContent(m_pTable);
    m_pTable->setRowCount(int(rows.size()));
    for (int row = 0; row < rows.size(); ++row) {
        for (int column = 0; column < m_columns.size(); ++column)
            m_pTable->setItem(row, column, new QTableWidgetItem(rows[row].cells.value(column)));
        if (!rows[row].strPicture.isEmpty())
            m_pTable->item(row, 0)->setIcon(
                GetImageManager()->GetImage(rows[row].strPicture.toUtf8().constData()));
    }
    if (!rows.isEmpty())
        m_pTable->setCurrentCell(qMin(current, int(rows.size()) - 1), 0);
    m_szNotice = notice;
    m_pNotice->setText(qTranslate(notice));
    m_pNotice->setVisible(rows.isEmpty());
}

void hostList::goToFirst()
{
    if (m_pTable->rowCount() > 0)
        m_pTable->setCurrentCell(0, 0);
    m_pTable->scrollToTop();
}

int hostList::currentRow() const
{
    return m_pTable->currentRow();
}

void hostList::setFocus()
{
    m_pTable->setFocus(Qt::OtherFocusReason);
}

bool hostList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pViewport)
        followFinger(event);
    if (event->type() == QEvent::KeyPress && watched == m_pTable)
        return pressKey(static_cast<QKeyEvent*>(event)->key());
    return false;
}

// The toolkit tells the second of two quick taps as a double click, without the click of a single one.
void hostList::followFinger(const QEvent* event)
{
    const bool isRelease = event->type() == QEvent::MouseButtonRelease;
    if (!isRelease && event->type() != QEvent::MouseButtonPress &&
        event->type() != QEvent::MouseButtonDblClick)
        return;
    const int row = m_pTable->rowAt(static_cast<const QMouseEvent*>(event)->position().toPoint().y());
    if (!isRelease)
        m_nTapped = row == m_pTable->currentRow() ? row : -1;
    else if (row >= 0 && row == m_nTapped)
        QMetaObject::invokeMethod(
            this, [this, row] { emit opened(row); }, Qt::QueuedConnection);
}

bool hostList::pressKey(int key)
{
    if (qIsOkKey(key)) {
        if (currentRow() >= 0)
            emit opened(currentRow());
        return true;
    }
    switch (key) {
    case Qt::Key_Up:
        step(-1);
        return true;
    case Qt::Key_Down:
        step(1);
        return true;
    default:
        return false;
    }
}

void hostList::step(int rows)
{
    const int count = m_pTable->rowCount();
    if (count > 0)
        m_pTable->setCurrentCell((currentRow() + rows + count) % count, 0);
}
