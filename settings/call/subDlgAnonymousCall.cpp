#include "settings/call/subDlgAnonymousCall.h"
#include "settings/call/lineFile.h"
#include "support/host/message.h"
#include "support/host/registry.h"
#include "ui_subDlgAnonymousCall.h"

namespace {
const tagChoice kSwitch[] = {{HX_TR("Off"), "0"}, {HX_TR("On"), "1"}};
const char* const kIme = "2aB,ABC,abc,123";
constexpr int kLongestCode = 32;
} // namespace

subDlgAnonymousCall::subDlgAnonymousCall() : ui(new Ui::subDlgAnonymousCall)
{
    ui->setupUi(this);
}

subDlgAnonymousCall::~subDlgAnonymousCall() = default;

QWidget* subDlgAnonymousCall::FirstFocus()
{
    return ui->cmbAnonymousCall;
}

void subDlgAnonymousCall::BindLine(int line)
{
    const HREGISTRY account = registryOpen(lineFile(line), "account");
    Bind({
        {ui->cmbAnonymousCall, account, "AnonymousCall", "", kSwitch},
        {ui->cmbAnonymousCallRejection, account, "RejectAnonymousCall", "", kSwitch},
        {ui->editAnonymousCallOnCode, account, "AnonymousCall_OnCode", "", kIme, "123", kLongestCode},
        {ui->editAnonymousCallOffCode, account, "AnonymousCall_OffCode", "", kIme, "123"},
        {ui->editRejectionOnCode, account, "AnonymousReject_OnCode", "", kIme, "123"},
        {ui->editRejectionOffCode, account, "AnonymousReject_OffCode", "", kIme, "123"},
    });
}

// What can be switched on by a code must be switched off by one.
int subDlgAnonymousCall::save()
{
    const auto lacksOff = [](const QLineEdit* on, const QLineEdit* off) {
        return !on->text().isEmpty() && off->text().isEmpty();
    };
    if (lacksOff(ui->editAnonymousCallOnCode, ui->editAnonymousCallOffCode))
        return Refuse(ui->editAnonymousCallOffCode, HX_TR("Anonymous Call Off code can't be empty!"));
    if (lacksOff(ui->editRejectionOnCode, ui->editRejectionOffCode))
        return Refuse(ui->editRejectionOffCode, HX_TR("Rejection Off code can't be empty!"));
    return 1;
}

void subDlgAnonymousCall::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, unsigned(m_iLine));
}
