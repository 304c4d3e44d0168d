#pragma once
// The page "Hotline": the number that is dialled when somebody opens the dial screen and types nothing. The
// phone reads it there: nobody is told. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgHotline;
}

class dlgHotline : public ConfigPage
{
    Q_OBJECT
public:
    dlgHotline(QWidget* parent, tagLeftBarInfo* info);
    ~dlgHotline() override;

protected:
    void RefreshData() override;
    QWidget* FirstFocus() override;
    int save() override;

protected slots:
    void on_click_IME() override;

private:
    void on_init_data();

    std::unique_ptr<Ui::dlgHotline> ui;
};
