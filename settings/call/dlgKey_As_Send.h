#pragma once
// The page "Key As Send": which key ends a number on the dial screen. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgKey_As_Send;
}

class dlgKey_As_Send : public ConfigPage
{
    Q_OBJECT
public:
    dlgKey_As_Send(QWidget* parent, tagLeftBarInfo* info);
    ~dlgKey_As_Send() override;

protected:
    QWidget* FirstFocus() override;
    void BroadcastChange() override;

private:
    void on_init_data();

    std::unique_ptr<Ui::dlgKey_As_Send> ui;
};
