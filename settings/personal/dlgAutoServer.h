#pragma once
// The page "Auto Provision": the server that the phone gets its settings from. Nothing is checked: what is
// typed is stored. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgAutoServer;
}

class dlgAutoServer : public ConfigPage
{
    Q_OBJECT
public:
    dlgAutoServer(QWidget* parent, tagLeftBarInfo* info);
    ~dlgAutoServer() override;

protected:
    QWidget* FirstFocus() override;

private:
    std::unique_ptr<Ui::dlgAutoServer> ui;
};
