#include "settings/personal/dlgPhone_Setting.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/combo.h"
#include "support/host/language.h"
#include "support/host/message.h"
#include "support/host/net.h"
#include "ui_dlgPhone_Setting.h"

dlgPhone_Setting::dlgPhone_Setting(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgPhone_Setting)
{
    ui->setupUi(this);
    // Its traces have always named another page.
    SetFilter(FILTER_WHILE_ACTIVE, "dlgTvOutPut");
    BuildFrame(ui->frmBackground, HX_TR("Phone Setting"), KEYS_CHOICE);
    InitData();
}

dlgPhone_Setting::~dlgPhone_Setting() = default;

void dlgPhone_Setting::InitData()
{
    addLanguages();
    Bind({
        {ui->cmbBoxLanguage, registryOpen(USER_INI, "Language"), "strGUILanguage", "English"},
        {ui->chkDndPstn, registryOpen(USER_INI, "DND"), "bEffectPstn", ""},
    });
}

// Each as its own speakers write it, in every language.
void dlgPhone_Setting::addLanguages()
{
    chObjArray<tagLanguageName, true, 4> names;
    GetLanguageHelper()->lang_GetAllName(names);
    for (int i = 0; i < names.GetSize(); ++i)
        qAddComboBoxItem(ui->cmbBoxLanguage, names[i].strNativeName, names[i].strName);
}

QWidget* dlgPhone_Setting::FirstFocus()
{
    return ui->cmbBoxLanguage;
}

void dlgPhone_Setting::RefreshData()
{
    m_nLanguage = ui->cmbBoxLanguage->currentIndex();
}

// The language is stored before the question: "No" leaves it to the next start.
void dlgPhone_Setting::on_click_Save()
{
    SaveConfigsToRegistry();
    if (!noteUnlessSaved(AreConfigsSaved(), this))
        return;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PHONE, 0);
    const bool isOther = ui->cmbBoxLanguage->currentIndex() != m_nLanguage;
    if (isOther && questionBox(HX_TR("Reset language ?"), this)) {
        sysreboot(1);
        return;
    }
    accept();
}
