#pragma once
// The page "Video Set": how the calls of a line are made, and what their picture is like.
// User-interface thread.
#include "frame/linesPage.h"
#include <memory>

namespace Ui {
class dlgVideoSet;
}

class dlgVideoSet : public LinesPage
{
    Q_OBJECT
public:
    dlgVideoSet(QWidget* parent, tagLeftBarInfo* info);
    ~dlgVideoSet() override;

protected:
    LineBody* MakeBody() override;

private:
    std::unique_ptr<Ui::dlgVideoSet> ui;
};
