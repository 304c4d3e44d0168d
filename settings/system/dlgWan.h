#pragma once
// The page "WAN": how the phone gets on the network. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgWan;
}

class dlgWan : public ConfigPage
{
    Q_OBJECT
public:
    dlgWan(QWidget* parent, tagLeftBarInfo* info);
    ~dlgWan() override;

protected:
    // A phone that gets its address from the network can write it into the static fields at each show.
    void RefreshData() override;
    QWidget* FirstFocus() override;
    int save() override;

protected slots:
    // Stores, offers a reboot, applies the settings while the network is not up, and closes.
    void on_click_Save() override;

private:
    void InitData();
    void DisplayData();
    int checkPPPoE();
    int checkStaticIp();
    int switchVlanOff();

    std::unique_ptr<Ui::dlgWan> ui;
};
