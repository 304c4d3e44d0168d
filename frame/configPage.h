#pragma once
// A settings page whose widgets are tied to configuration keys by a table. See docs/writing-a-page.md.
// User-interface thread.
#include "frame/configBindings.h"
#include "frame/settingPage.h"

class ConfigPage : public SettingPage, public ConfigBindings
{
    Q_OBJECT
public:
    ConfigPage(QWidget* parent, tagLeftBarInfo* info);

protected:
    // At each show, after the stored values were loaded: what the table does not do.
    virtual void RefreshData() {}
    // Where the focus goes at each show; null leaves it.
    virtual QWidget* FirstFocus() { return nullptr; }
    // StoreBindings(); tells the user when something could not be stored: 0.
    int Store();

    int Refuse(QWidget* widget, const char* message) override { return SettingPage::Refuse(widget, message); }
    void showEvent(QShowEvent* event) override;

protected slots:
    // save(), Store(), close.
    void on_click_Save() override;
};
