#pragma once
// The corner of the call screen that is the user's own picture's while the other side may see him. A touch
// goes on to the screen. User-interface thread.
#include <QPixmap>
#include <QWidget>

class callCorner : public QWidget
{
    Q_OBJECT
public:
    explicit callCorner(QWidget* parent = nullptr);
    // His picture lies below: nothing but the edge is painted.
    void setPictured(bool pictured);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QPixmap m_person;
    bool m_bPictured = false;
};
