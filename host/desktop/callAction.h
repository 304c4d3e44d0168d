#pragma once
// A round button of what can be done in a call, with its word below: pale, white while it is on, with a ring
// while the keys have chosen it. The keys stay the screen's: it takes no focus. User-interface thread.
#include <QAbstractButton>
#include <QPixmap>

class callAction : public QAbstractButton
{
    Q_OBJECT
public:
    explicit callAction(QWidget* parent = nullptr);
    // Device path of a white picture.
    void setGlyph(const char* path);
    void setOn(bool on);
    void setChosen(bool chosen);
    bool isOn() const { return m_bOn; }
    bool isChosen() const { return m_bChosen; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QPixmap m_glyph;
    QPixmap m_darkGlyph;
    bool m_bOn = false;
    bool m_bChosen = false;
};
