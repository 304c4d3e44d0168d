#pragma once
// One line on the page "Auto Answer". User-interface thread.
#include "frame/lineBody.h"
#include <memory>

namespace Ui {
class subDlgAutoAnswer;
}

class subDlgAutoAnswer : public LineBody
{
    Q_OBJECT
public:
    subDlgAutoAnswer();
    ~subDlgAutoAnswer() override;
    QWidget* FirstFocus() override;

protected:
    void BindLine(int line) override;

private:
    std::unique_ptr<Ui::subDlgAutoAnswer> ui;
};
