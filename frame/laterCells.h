#pragma once
// Fills the cells of a list so that its page is on the screen soon: a cell without text gets its item later,
// a few each turn of the event loop. User-interface thread.
#include <QList>
#include <QObject>
#include <QTimer>
#include <utility>

class QTableWidget;

class LaterCells : public QObject
{
    Q_OBJECT
public:
    enum { CELLS_A_TURN = 16 };

    // Lives as long as the table, which owns it.
    explicit LaterCells(QTableWidget* table);
    // A text makes its item, or changes it, at once; an empty text waits where there is no item.
    void SetText(int row, int column, const QString& text);
    // Forgets the cells that wait: before the rows are taken away.
    void Clear();
    bool IsDone() const { return m_waiting.isEmpty(); }

signals:
    // The last cell that waited has its item.
    void done();

private:
    void MakeSome();
    void makeItem(int row, int column);

    QTableWidget* m_pTable;
    QList<std::pair<int, int>> m_waiting; // row, column
    QTimer m_timer;
};
