#pragma once
// The page "TV Output". What is stored here is read by the process that drives the output: nobody is told.
// User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgTvOutPut;
}

class dlgTvOutPut : public ConfigPage
{
    Q_OBJECT
public:
    dlgTvOutPut(QWidget* parent, tagLeftBarInfo* info);
    ~dlgTvOutPut() override;

protected:
    QWidget* FirstFocus() override;

private:
    void on_init_data();

    std::unique_ptr<Ui::dlgTvOutPut> ui;
};
