#pragma once
// Fills the cells of a list so that its page is on the screen soon: a cell without text gets its item later,
// some each turn of the event loop. User-interface thread.
#include "frame/laterWork.h"
#include <QObject>

class QTableWidget;

class LaterCells : public QObject
{
    Q_OBJECT
public:
    // Lives as long as the table, which owns it.
    explicit LaterCells(QTableWidget* table);
    // A text makes its item, or changes it, at once; an empty text waits where there is no item.
    void SetText(int row, int column, const QString& text);
    // Forgets the cells that wait: before the rows are taken away.
    void Clear() { m_work.Clear(); }
    bool IsDone() const { return m_work.IsDone(); }

signals:
    // The last cell that waited has its item.
    void done();

private:
    void makeItem(int row, int column);

    QTableWidget* m_pTable;
    LaterWork m_work;
};
