#include "settings/personal/dlgTvOutPut.h"
#include "frame/configFiles.h"
#include "ui_dlgTvOutPut.h"

namespace {

const tagChoice kOutputs[] = {{HX_TR("Manual"), "0"}, {HX_TR("Auto"), "1"}};
const tagChoice kFormats[] = {{HX_TR("PAL"), "0"}, {HX_TR("NTSC"), "1"}};

} // namespace

dlgTvOutPut::dlgTvOutPut(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgTvOutPut)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("TV Output"), KEYS_CHOICE);
    on_init_data();
}

dlgTvOutPut::~dlgTvOutPut() = default;

void dlgTvOutPut::on_init_data()
{
    const HREGISTRY output = registryOpen(USER_INI, "TVOut");
    Bind({
        {ui->cmbBoxTvOutput, output, "bTvOutput", "", kOutputs},
        {ui->cmbBoxTvFormat, output, "bNTSC", "", kFormats},
    });
}

QWidget* dlgTvOutPut::FirstFocus()
{
    return ui->cmbBoxTvOutput;
}
