#include "settings/call/dlgAnonymousCallDialog.h"
#include "settings/call/subDlgAnonymousCall.h"
#include "support/host/api.h"
#include "ui_dlgAnonymousCallDialog.h"

dlgAnonymousCallDialog::dlgAnonymousCallDialog(QWidget* parent, tagLeftBarInfo* info)
    : LinesPage(parent, info), ui(new Ui::dlgAnonymousCallDialog)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Anonymous Call"), KEYS_EDIT);
    FollowFocus({{FOCUS_EDIT, SHOWS_METHOD, SHOWS_LABEL},
                 {FOCUS_ANY, SHOWS_NOTHING, SHOWS_NOTHING},
                 {FOCUS_LEFT_EDIT, SHOWS_NOTHING, SHOWS_NOTHING}});
    BuildLines(ui->wgtLinePage);
}

dlgAnonymousCallDialog::~dlgAnonymousCallDialog() = default;

LineBody* dlgAnonymousCallDialog::MakeBody()
{
    return new subDlgAnonymousCall;
}
