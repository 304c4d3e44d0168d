#pragma once
// The page "Call Waiting": whether a second call waits. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgCall_Waiting;
}

class dlgCall_Waiting : public ConfigPage
{
    Q_OBJECT
public:
    dlgCall_Waiting(QWidget* parent, tagLeftBarInfo* info);
    ~dlgCall_Waiting() override;

protected:
    QWidget* FirstFocus() override;
    void BroadcastChange() override;

private:
    void InitData();

    std::unique_ptr<Ui::dlgCall_Waiting> ui;
};
