#include "settings/call/dlgKey_As_Send.h"
#include "frame/configFiles.h"
#include "support/host/message.h"
#include "support/host/registry.h"
#include "ui_dlgKey_As_Send.h"

namespace {
const tagChoice kKeys[] = {{HX_TR("Disabled"), "0"}, {HX_TR("Key #"), "1"}, {HX_TR("Key *"), "2"}};
} // namespace

dlgKey_As_Send::dlgKey_As_Send(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgKey_As_Send)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Key As Send"), KEYS_CHOICE);
    // Traced under the name that logs have always had here.
    SetFilter(FILTER_WHILE_ACTIVE, "dlgTvOutPut");
    on_init_data();
}

dlgKey_As_Send::~dlgKey_As_Send() = default;

void dlgKey_As_Send::on_init_data()
{
    ui->cmbBoxKeyAsSend->setFocusPolicy(Qt::StrongFocus);
    Bind({{ui->cmbBoxKeyAsSend, registryOpen(USER_INI, "KeyAsSend"), "eType", "", kKeys}});
}

QWidget* dlgKey_As_Send::FirstFocus()
{
    return ui->cmbBoxKeyAsSend;
}

void dlgKey_As_Send::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_KEY_AS_SEND, 0);
}
