#include "settings/call/dlgVideoSet.h"
#include "settings/call/subVideoSet.h"
#include "support/host/api.h"
#include "ui_dlgVideoSet.h"

dlgVideoSet::dlgVideoSet(QWidget* parent, tagLeftBarInfo* info)
    : LinesPage(parent, info), ui(new Ui::dlgVideoSet)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Video Set"), KEYS_CHOICE);
    BuildLines(ui->wgtLinePage);
}

dlgVideoSet::~dlgVideoSet() = default;

LineBody* dlgVideoSet::MakeBody()
{
    return new subVideoSet;
}
