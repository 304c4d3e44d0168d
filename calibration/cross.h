#pragma once
// A black cross on white: where the finger goes. User-interface thread.
#include <QFrame>

class Cross : public QFrame
{
    Q_OBJECT
public:
    enum : int { SIDE = 50, HALF = SIDE / 2 };

    explicit Cross(QWidget* parent);
    // Puts its middle at this place of the parent.
    void Point(int x, int y);

protected:
    void paintEvent(QPaintEvent* event) override;
};
