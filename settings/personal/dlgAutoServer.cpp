#include "settings/personal/dlgAutoServer.h"
#include "frame/configFiles.h"
#include "frame/wgtHelper.h"
#include "ui_dlgAutoServer.h"

namespace {

const char* const kTextIme = "2aB,ABC,abc,123";
const char* const kFirstIme = "2aB";
constexpr int kLongestEntry = 99;

} // namespace

dlgAutoServer::dlgAutoServer(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgAutoServer)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Update Server Setting"), KEYS_EDIT);
    for (QLineEdit* edit : {ui->editServerURL, ui->editUserName, ui->editPassword})
        setupLineEdit(edit);
    setupPasswordEdit(ui->editPassword);
    const HREGISTRY server = registryOpen(SYSTEM_INI, "AutoProvision");
    Bind({
        {ui->editServerURL, server, "strServerURL", "", kTextIme, kFirstIme, kLongestEntry},
        {ui->editUserName, server, "strUserName", "", kTextIme, kFirstIme, kLongestEntry},
        {ui->editPassword, server, "strPassword", "", kTextIme, kFirstIme, kLongestEntry},
    });
}

dlgAutoServer::~dlgAutoServer() = default;

QWidget* dlgAutoServer::FirstFocus()
{
    return ui->editServerURL;
}
