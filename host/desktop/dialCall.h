#pragma once
// The green button that calls. It takes no focus. User-interface thread.
#include <QAbstractButton>

class dialCall : public QAbstractButton
{
    Q_OBJECT
public:
    explicit dialCall(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent*) override;
};
