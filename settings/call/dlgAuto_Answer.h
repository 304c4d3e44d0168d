#pragma once
// The page "Auto Answer": which lines answer by themselves, and when. The phone reads it with each call:
// nobody is told. User-interface thread.
#include "frame/linesPage.h"
#include <memory>

namespace Ui {
class dlgAuto_Answer;
}

class dlgAuto_Answer : public LinesPage
{
    Q_OBJECT
public:
    dlgAuto_Answer(QWidget* parent, tagLeftBarInfo* info);
    ~dlgAuto_Answer() override;

protected:
    LineBody* MakeBody() override;

private:
    std::unique_ptr<Ui::dlgAuto_Answer> ui;
};
