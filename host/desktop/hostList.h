#pragma once
// The list of a host's page: a table with headings. Up and down go round, OK or a second tap opens the row.
// User-interface thread.
#include <QObject>
#include <QStringList>

class QLabel;
class QTableWidget;

// A column: English key of its heading, and its width in pixels.
struct tagListColumn
{
    const char* szHeading;
    int nWidth;
};

struct tagListRow
{
    QStringList cells;
    QString strPicture; // device path of an icon in the first column; empty for none
};

class hostList : public QObject
{
    Q_OBJECT
public:
    // table: of the page's form; it owns the list. notice: a label over it, for what there is to say instead
    // of rows.
    hostList(QTableWidget* table, QLabel* notice, const QList<tagListColumn>& columns);
    // The rows from now on; the current one stays where it is, or is the last. Without rows the notice is
    // shown, in the present language.
    void setRows(const QList<tagListRow>& rows, const char* notice);
    void goToFirst();
    int currentRow() const; // -1 without rows
    void setFocus();

signals:
    void opened(int row);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showTexts();
    void followFinger(const QEvent* event);
    bool pressKey(int key);
    void step(int rows);
    QTableWidget* m_pTable;
    QWidget* m_pViewport; // of the table, which is asked for nothing while it is taken down
    QLabel* m_pNotice;
    QList<tagListColumn> m_columns;
    const char* m_szNotice = "";
    int m_nTapped = -1; // the row under the finger, if it was the current one before
};
