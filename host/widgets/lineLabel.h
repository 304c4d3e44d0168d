#pragma once
// A label whose text has one line, as large as it fits, and several small ones only when it does not.
#include <QLabel>

class lineLabel : public QLabel
{
    Q_OBJECT
public:
    explicit lineLabel(QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;
};
