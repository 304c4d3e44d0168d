#include "frame/configPage.h"
#include "frame/noteBox.h"

ConfigPage::ConfigPage(QWidget* parent, tagLeftBarInfo* info) : SettingPage(parent, info) {}

void ConfigPage::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    ResetConfigsToRegistry();
    RefreshData();
    SetInputMethods();
    if (QWidget* first = FirstFocus())
        first->setFocus();
}

int ConfigPage::Store()
{
    return noteUnlessSaved(StoreBindings(), this);
}

void ConfigPage::on_click_Save()
{
    if (save() && Store())
        accept();
}
