#pragma once
// The page "Proxy": which server carries the calls. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgProxy;
}

class dlgProxy : public ConfigPage
{
    Q_OBJECT
public:
    dlgProxy(QWidget* parent, tagLeftBarInfo* info);
    ~dlgProxy() override;

protected:
    QWidget* FirstFocus() override;
    int save() override;
    void BroadcastChange() override;

private:
    std::unique_ptr<Ui::dlgProxy> ui;
};
