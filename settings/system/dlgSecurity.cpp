#include "settings/system/dlgSecurity.h"
#include "settings/system/adminPassword.h"
#include "support/host/ime.h"
#include "support/host/message.h"
#include "support/host/password.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include "ui_dlgSecurity.h"
#include <QScopedValueRollback>

namespace {

constexpr int kLongestPassword = 99;

} // namespace

dlgSecurity::dlgSecurity(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgSecurity)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Admin Password"), KEYS_EDIT);
    for (QLineEdit* edit : {ui->editOld, ui->editNew, ui->editAgain})
        adminSetupEdit(edit);
    ui->editNew->setMaxLength(kLongestPassword);
}

dlgSecurity::~dlgSecurity() = default;

void dlgSecurity::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    ++m_nShow;
    clearEdits();
    const chString method = adminInputMethod();
    for (QLineEdit* edit : {ui->editOld, ui->editNew, ui->editAgain})
        qSetCurrentIME(edit, method);
    ui->editOld->setFocus();
}

// No password waits in a hidden page, and no save goes on for one.
void dlgSecurity::hideEvent(QHideEvent* event)
{
    ++m_nShow;
    clearEdits();
    SettingPage::hideEvent(event);
}

void dlgSecurity::clearEdits()
{
    for (QLineEdit* edit : {ui->editOld, ui->editNew, ui->editAgain})
        edit->clear();
}

// The hashes take their time, in which the page lives on: a second "Save" of the same showing has nothing to
// add, and whoever leaves the page changes nothing, opened again or not.
void dlgSecurity::on_click_Save()
{
    if (m_nSaving == m_nShow)
        return;
    const QScopedValueRollback<int> saving(m_nSaving, m_nShow);
    changePassword();
}

void dlgSecurity::changePassword()
{
    const chString old = fromQString(qReturnLineEdit(ui->editOld));
    const chString wanted = fromQString(qReturnLineEdit(ui->editNew));
    const chString again = fromQString(qReturnLineEdit(ui->editAgain));
    const int show = m_nShow;
    filePassword file(ADMIN_PASSWORD_FILE);
    const int isRight = file.IsRightUserPassword(ADMIN_USER, old);
    if (show != m_nShow)
        return;
    if (!isRight) {
        Refuse(ui->editOld, HX_TR("Old password is wrong!"));
        return;
    }
    if (wanted != again) {
        Refuse(ui->editNew, HX_TR("New passwords do not match."));
        return;
    }
    const int isSet = file.SetUserPassword(ADMIN_USER, wanted);
    if (show != m_nShow)
        return;
    if (!isSet || !file.SaveToFile(ADMIN_PASSWORD_FILE))
        nuxTrace(TRACE_NOTE, "The administrator's password is not stored");
    if (show != m_nShow)
        return;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_PASSWORD, 0);
    accept();
}
