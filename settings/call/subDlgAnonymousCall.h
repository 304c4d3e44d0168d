#pragma once
// One line on the page "Anonymous Call". User-interface thread.
#include "frame/lineBody.h"
#include <memory>

namespace Ui {
class subDlgAnonymousCall;
}

class subDlgAnonymousCall : public LineBody
{
    Q_OBJECT
public:
    subDlgAnonymousCall();
    ~subDlgAnonymousCall() override;
    QWidget* FirstFocus() override;

protected:
    void BindLine(int line) override;
    int save() override;
    void BroadcastChange() override;

private:
    std::unique_ptr<Ui::subDlgAnonymousCall> ui;
};
