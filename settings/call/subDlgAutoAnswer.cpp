#include "settings/call/subDlgAutoAnswer.h"
#include "settings/call/lineFile.h"
#include "support/host/registry.h"
#include "ui_subDlgAutoAnswer.h"

namespace {
const tagChoice kTimes[] = {{HX_TR("Directly"), "0"},
                            {HX_TR("After 5 Seconds"), "5"},
                            {HX_TR("After 15 Seconds"), "15"},
                            {HX_TR("After 30 Seconds"), "30"}};
} // namespace

subDlgAutoAnswer::subDlgAutoAnswer() : ui(new Ui::subDlgAutoAnswer)
{
    ui->setupUi(this);
}

subDlgAutoAnswer::~subDlgAutoAnswer() = default;

QWidget* subDlgAutoAnswer::FirstFocus()
{
    return ui->chkAutoAnswer;
}

void subDlgAutoAnswer::BindLine(int line)
{
    const HREGISTRY answer = registryOpen(lineFile(line), "AutoAnswer");
    Bind({
        {ui->cmbAutoAnswerType, answer, "nTimeout", "", kTimes},
        {ui->chkAutoAnswer, answer, "bEnable", "0"},
    });
}
