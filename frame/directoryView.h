#pragma once
// The three-column list of a directory. User-interface thread.
#include <QTableWidget>

class qDirectoryView : public QTableWidget
{
    Q_OBJECT
public:
    explicit qDirectoryView(QWidget* parent = nullptr);
};
