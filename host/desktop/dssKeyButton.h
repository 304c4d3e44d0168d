#pragma once
// One programmable key of the home screen: its type, its label, its lamp.
#include "host/desktop/dssKeyBoard.h"
#include "host/desktop/homeButton.h"

class dssKeyButton : public homeButton
{
    Q_OBJECT
public:
    explicit dssKeyButton(QWidget* parent);
    // Repaints when something differs.
    void setLook(const tagDssKeyLook& look);

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent* event) override;

private:
    tagDssKeyLook m_look;
};
