#pragma once
// A round button of the call screen with its word below. The keys stay the screen's: it takes no focus.
#include <QAbstractButton>
#include <QPixmap>

class callButton : public QAbstractButton
{
    Q_OBJECT
public:
    explicit callButton(QWidget* parent = nullptr);
    // Device paths of its disc.
    void setDisc(const char* normal, const char* pressed);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QPixmap m_normal;
    QPixmap m_pressed;
};
