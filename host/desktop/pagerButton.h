#pragma once
// Turns pages: a dot for each, and which is on view.
#include <QAbstractButton>

class pagerButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit pagerButton(QWidget* parent);
    // page: from 0.
    void setPage(int page, int pages);

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    int m_nPage = 0;
    int m_nPages = 1;
};
