#include "frame/laterCells.h"
#include <QTableWidget>

LaterCells::LaterCells(QTableWidget* table) : QObject(table), m_pTable(table) {}

void LaterCells::SetText(int row, int column, const QString& text)
{
    if (QTableWidgetItem* item = m_pTable->item(row, column)) {
        item->setText(text);
    } else if (!text.isEmpty()) {
        m_pTable->setItem(row, column, new QTableWidgetItem(text));
    } else {
        m_work.AddForLater([this, row, column] { makeItem(row, column); });
    }
}

// The cell may have got a text meanwhile, and its row may be gone.
void LaterCells::makeItem(int row, int column)
{
    if (row < m_pTable->rowCount() && column < m_pTable->columnCount() && !m_pTable->item(row, column))
        m_pTable->setItem(row, column, new QTableWidgetItem);
    if (m_work.IsDone())
        emit done();
}
