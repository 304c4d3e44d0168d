#pragma once
// The page "Anonymous Call": which lines keep their number back, and which take no call from who does.
// User-interface thread.
#include "frame/linesPage.h"
#include <memory>

namespace Ui {
class dlgAnonymousCallDialog;
}

class dlgAnonymousCallDialog : public LinesPage
{
    Q_OBJECT
public:
    dlgAnonymousCallDialog(QWidget* parent, tagLeftBarInfo* info);
    ~dlgAnonymousCallDialog() override;

protected:
    LineBody* MakeBody() override;

private:
    std::unique_ptr<Ui::dlgAnonymousCallDialog> ui;
};
