#pragma once
// The rows that a dial screen offers: an icon, who, and a detail at the right. A finger drags them, and
// touches one twice to call it. User-interface thread.
#include "host/desktop/dialDirectory.h"
#include <QWidget>

class dialList : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text)
public:
    enum { ROW_HEIGHT = 50 };

    explicit dialList(QWidget* parent = nullptr);
    // No row is the current one then.
    void setRows(const QList<tagDialEntry>& rows);
    const QList<tagDialEntry>& rows() const { return m_rows; }
    int currentRow() const { return m_nCurrent; } // -1: none
    void setCurrentRow(int row);
    // "Anna 1002|802 12:15", for those who cannot see it.
    QString text() const;

signals:
    void currentChanged();
    // A second touch of the current row.
    void opened();

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void scrollTo(int offset);
    void paintRow(QPainter& painter, const QRect& place, int row) const;
    QList<tagDialEntry> m_rows;
    int m_nCurrent = -1;
    int m_nOffset = 0;  // pixels above the first that is seen
    int m_nPressed = 0; // where the finger came down
    int m_nOffsetThen = 0;
    bool m_bDragged = false;
};
