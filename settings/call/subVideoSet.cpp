#include "settings/call/subVideoSet.h"
#include "settings/call/lineFile.h"
#include "support/host/message.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "ui_subVideoSet.h"

namespace {

const tagChoice kCallTypes[] = {
    {HX_TR("Voice Call"), "0"}, {HX_TR("Video Call"), "1"}, {HX_TR("PSTN Call"), "2"}};
constexpr int kWithoutPstn = 2;
const tagChoice kSwitch[] = {{HX_TR("Off"), "0"}, {HX_TR("On"), "1"}};
// The last one is a binary megabit.
const tagChoice kBandwidths[] = {{HX_TR("Auto"), "0"},      {HX_TR("128kbps"), "128"},
                                 {HX_TR("192kbps"), "192"}, {HX_TR("256kbps"), "256"},
                                 {HX_TR("384kbps"), "384"}, {HX_TR("512kbps"), "512"},
                                 {HX_TR("768kbps"), "768"}, {HX_TR("1Mbps"), "1024"}};
const tagChoice kFrameRates[] = {{HX_TR("10fps"), "10"},
                                 {HX_TR("15fps"), "15"},
                                 {HX_TR("20fps"), "20"},
                                 {HX_TR("25fps"), "25"},
                                 {HX_TR("30fps"), "30"}};

} // namespace

subVideoSet::subVideoSet() : ui(new Ui::subVideoSet)
{
    ui->setupUi(this);
}

subVideoSet::~subVideoSet() = default;

QWidget* subVideoSet::FirstFocus()
{
    return ui->cmbCallType;
}

void subVideoSet::BindLine(int line)
{
    const QByteArray file = lineFile(line);
    const HREGISTRY option = registryOpen(file, "CallOption");
    const Choices types = phone_GetPSTNEnable() ? Choices(kCallTypes) : Choices(kCallTypes, kWithoutPstn);
    Bind({
        {ui->cmbCallType, option, "eCallMode", "1", types},
        {ui->cmbLocalVideo, option, "bActiveCamera", "1", kSwitch},
        {ui->cmbBandwidth, registryOpen(file, "ADVANCED"), "VideoBandwidth", "0", kBandwidths},
        {ui->cmbFrameRate, registryOpen(file, "hxMedia"), "nFrameRate", "30", kFrameRates},
    });
}

void subVideoSet::BroadcastChange()
{
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_ACCOUNT, unsigned(m_iLine));
}
