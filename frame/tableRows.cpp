#include "frame/tableRows.h"
#include <QTableWidget>

void tableStepRow(QTableWidget* table, int step)
{
    const int rows = table->rowCount();
    if (rows < 2)
        return;
    const int row = table->currentRow() + step;
    table->setCurrentCell(row < 0 ? rows - 1 : row >= rows ? 0 : row, 0);
}

bool tableWrapRow(QTableWidget* table, int key)
{
    const int last = table->rowCount() - 1;
    const int row = table->currentRow();
    if (last < 1 || !((key == Qt::Key_Up && row == 0) || (key == Qt::Key_Down && row == last)))
        return false;
    table->setCurrentCell(row == 0 ? last : 0, 0);
    return true;
}
