#include "frame/laterCells.h"
#include <QTableWidget>

LaterCells::LaterCells(QTableWidget* table) : QObject(table), m_pTable(table)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &LaterCells::MakeSome);
}

void LaterCells::SetText(int row, int column, const QString& text)
{
    if (QTableWidgetItem* item = m_pTable->item(row, column)) {
        item->setText(text);
    } else if (!text.isEmpty()) {
        m_pTable->setItem(row, column, new QTableWidgetItem(text));
    } else {
        m_waiting.append({row, column});
        m_timer.start();
    }
}

void LaterCells::Clear()
{
    m_waiting.clear();
    m_timer.stop();
}

void LaterCells::MakeSome()
{
    for (int i = 0; i < CELLS_A_TURN && !m_waiting.isEmpty(); ++i) {
        const auto [row, column] = m_waiting.takeFirst();
        makeItem(row, column);
    }
    if (!m_waiting.isEmpty())
        return;
    m_timer.stop();
    emit done();
}

// The cell may have got a text meanwhile, and its row may be gone.
void LaterCells::makeItem(int row, int column)
{
    if (row < m_pTable->rowCount() && column < m_pTable->columnCount() && !m_pTable->item(row, column))
        m_pTable->setItem(row, column, new QTableWidgetItem);
}
