#include "settings/call/dlgHotline.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "ui_dlgHotline.h"

namespace {

const char* const kSection = "Hotline";
const char* const kNumber = "strNumber";
const char* const kDelay = "nTimeDelay";
const char* const kDefaultDelay = "2";
constexpr int kLongestNumber = 32;
constexpr int kDelayDigits = 2;
constexpr int kLongestDelay = 10;

} // namespace

dlgHotline::dlgHotline(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgHotline)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Hotline"), KEYS_EDIT);
    on_init_data();
}

dlgHotline::~dlgHotline() = default;

void dlgHotline::on_init_data()
{
    const HREGISTRY hotline = registryOpen(USER_INI, kSection);
    Bind({
        {ui->editNumber, hotline, kNumber, "", "2aB,ABC,abc,123", "123", kLongestNumber},
        {ui->editDelayTime, hotline, kDelay, "", "123", nullptr, 0, DIGITS_ONLY},
    });
}

// A delay that is missing shows as the one that holds then.
void dlgHotline::RefreshData()
{
    const chString number = NUX_SubClass::nuxGetRegistryString(USER_INI, kSection, kNumber, "");
    const chString delay = NUX_SubClass::nuxGetRegistryString(USER_INI, kSection, kDelay, kDefaultDelay);
    ui->editNumber->setText(toQString(number));
    ui->editDelayTime->setText(delay.IsEmpty() ? QString(kDefaultDelay) : toQString(delay));
}

QWidget* dlgHotline::FirstFocus()
{
    return ui->editNumber;
}

// Any number will do: without one there is no hotline.
int dlgHotline::save()
{
    const QString delay = ui->editDelayTime->text();
    if (delay.isEmpty() || delay.size() > kDelayDigits || delay.toInt() > kLongestDelay) {
        noteBox(HX_TR("Time limited(0-10s)!"), this);
        return 0;
    }
    ui->editDelayTime->setText(QString::number(delay.toInt()));
    return 1;
}

// A number is what is typed here: the key only shows how.
void dlgHotline::on_click_IME() {}
