#include "settings/call/dlgAuto_Answer.h"
#include "settings/call/subDlgAutoAnswer.h"
#include "support/host/api.h"
#include "ui_dlgAuto_Answer.h"

dlgAuto_Answer::dlgAuto_Answer(QWidget* parent, tagLeftBarInfo* info)
    : LinesPage(parent, info), ui(new Ui::dlgAuto_Answer)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Auto Answer"), KEYS_CHOICE);
    BuildLines(ui->wgtLinePage);
}

dlgAuto_Answer::~dlgAuto_Answer() = default;

LineBody* dlgAuto_Answer::MakeBody()
{
    return new subDlgAutoAnswer;
}
