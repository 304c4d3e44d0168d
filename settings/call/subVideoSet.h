#pragma once
// One line on the page "Video Set". User-interface thread.
#include "frame/lineBody.h"
#include <memory>

namespace Ui {
class subVideoSet;
}

class subVideoSet : public LineBody
{
    Q_OBJECT
public:
    subVideoSet();
    ~subVideoSet() override;
    QWidget* FirstFocus() override;

protected:
    void BindLine(int line) override;
    void BroadcastChange() override;

private:
    std::unique_ptr<Ui::subVideoSet> ui;
};
