#pragma once
// The page "Personalize": the phone's language, and whether do-not-disturb holds for the analogue line. A new
// language is the phone's from its next start on. User-interface thread.
#include "frame/configPage.h"
#include <memory>

namespace Ui {
class dlgPhone_Setting;
}

class dlgPhone_Setting : public ConfigPage
{
    Q_OBJECT
public:
    dlgPhone_Setting(QWidget* parent, tagLeftBarInfo* info);
    ~dlgPhone_Setting() override;

protected:
    QWidget* FirstFocus() override;
    void RefreshData() override;

protected slots:
    // Stores, tells, offers a restart when the language is another one, and closes.
    void on_click_Save() override;

private:
    void InitData();
    void addLanguages();

    std::unique_ptr<Ui::dlgPhone_Setting> ui;
    int m_nLanguage = -1; // index at the last show
};
