#include "settings/call/dlgCall_Waiting.h"
#include "frame/configFiles.h"
#include "support/host/message.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "ui_dlgCall_Waiting.h"

namespace {
const tagChoice kEffects[] = {{HX_TR("Disabled"), "0"}, {HX_TR("Enabled"), "1"}};
} // namespace

dlgCall_Waiting::dlgCall_Waiting(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgCall_Waiting)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Call Waiting"), KEYS_CHOICE);
    // Traced under the name that logs have always had here.
    SetFilter(FILTER_WHILE_ACTIVE, "dlgTvOutPut");
    InitData();
}

dlgCall_Waiting::~dlgCall_Waiting() = default;

void dlgCall_Waiting::InitData()
{
    const HREGISTRY waiting = registryOpen(USER_INI, "CallWaiting");
    Bind({
        {ui->chkBoxenable, waiting, "bEnable", ""},
        {ui->cmbBoxPSTN, waiting, "bEffectPstn", "", kEffects},
    });
    // Hidden for good, it is still loaded and stored.
    if (!phone_GetPSTNEnable()) {
        ui->labPSTN->hide();
        ui->cmbBoxPSTN->hide();
    }
}

QWidget* dlgCall_Waiting::FirstFocus()
{
    return ui->chkBoxenable;
}

void dlgCall_Waiting::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
}
