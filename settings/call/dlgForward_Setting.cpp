#include "settings/call/dlgForward_Setting.h"
#include "frame/configFiles.h"
#include "frame/noteBox.h"
#include "support/host/ime.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "ui_dlgForward_Setting.h"

namespace {

const char* const kIme = "123,2aB,ABC,abc";
constexpr int kLongestNumber = 99;
constexpr int kTimeDigits = 3;
constexpr int kLongestTime = 100;

} // namespace

dlgForward_Setting::dlgForward_Setting(QWidget* parent, tagLeftBarInfo* info)
    : ConfigPage(parent, info), ui(new Ui::dlgForward_Setting)
{
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Forward Setting"), KEYS_EDIT);
    qFollowLanguage(this, [this] { showTimeCaption(); });
    showTimeCaption();
    on_init_data(1);
}

// The same word as the time of day, in English.
void dlgForward_Setting::showTimeCaption()
{
    ui->labTime->setText(qTranslate(HX_TR_NOTE("Time", "how long"), "how long"));
}

dlgForward_Setting::~dlgForward_Setting() = default;

// The later runs are the page's show.
void dlgForward_Setting::on_init_data(int first)
{
    if (!first)
        return;
    initm_cur({ui->chkAlways, ui->editAlways, ui->chkBusy, ui->editBusy, ui->chkNoAnswer, ui->editNoAnswer,
               ui->editBlank});
    const HREGISTRY always = registryOpen(USER_INI, "AlwaysForward");
    const HREGISTRY busy = registryOpen(USER_INI, "BusyForward");
    const HREGISTRY noAnswer = registryOpen(USER_INI, "NoAnswerForward");
    Bind({
        {ui->chkAlways, always, "bEnable", ""},
        {ui->editAlways, always, "strTarget", "", kIme, "123", kLongestNumber},
        {ui->chkBusy, busy, "bEnable", ""},
        {ui->editBusy, busy, "strTarget", "", kIme, "123", kLongestNumber},
        {ui->chkNoAnswer, noAnswer, "bEnable", ""},
        {ui->editNoAnswer, noAnswer, "strTarget", "", kIme, "123", kLongestNumber},
        {ui->editBlank, noAnswer, "nTimeout", "", kIme, "123", kTimeDigits, DIGITS_ONLY},
    });
}

QWidget* dlgForward_Setting::FirstFocus()
{
    return ui->chkAlways;
}

int dlgForward_Setting::save()
{
    return checkTarget(ui->chkAlways, ui->editAlways, HX_TR("Always forward number is invalid!")) &&
           checkTarget(ui->chkBusy, ui->editBusy, HX_TR("Busy forward number is invalid!")) &&
           checkTarget(ui->chkNoAnswer, ui->editNoAnswer, HX_TR("No answer forward number is invalid!")) &&
           checkTime();
}

// One that is switched off is not checked: what stands there is kept.
int dlgForward_Setting::checkTarget(QCheckBox* box, QLineEdit* edit, const char* message)
{
    if (!box->isChecked())
        return 1;
    const QString number = qReturnLineEdit(edit);
    if (number.isEmpty())
        return Refuse(edit, message);
    if (!IsForwadingtoSelf(number))
        return 1;
    edit->setFocus();
    return 0;
}

int dlgForward_Setting::checkTime()
{
    if (!ui->chkNoAnswer->isChecked())
        return 1;
    const QString time = qReturnLineEdit(ui->editBlank);
    const int seconds = time.toInt();
    if (time.size() > kTimeDigits || seconds < 1 || seconds > kLongestTime)
        return Refuse(ui->editBlank, HX_TR("No answer time is not within 1-100 seconds!"));
    ui->editBlank->setText(QString::number(seconds));
    return 1;
}

bool dlgForward_Setting::IsForwadingtoSelf(const QString& number)
{
    for (int index = 0; index < PHONE_ACCOUNT_COUNT; ++index) {
        tagAccountInfo info;
        phone_GetAccountInfoById(index, &info);
        const bool registered = info.eState == LINE_REGISTERED || info.eState == LINE_DEFAULT_ACCOUNT;
        if (!registered || QString::fromUtf8(info.szUser) != number)
            continue;
        noteBox(HX_TR("Can't forward to own number!"), this);
        return true;
    }
    return false;
}

void dlgForward_Setting::Display_Always_Forward(Qt::CheckState state, const char* target)
{
    ui->chkAlways->setCheckState(state);
    ui->editAlways->setText(QString::fromUtf8(target));
}

void dlgForward_Setting::Display_Busy_Forward(Qt::CheckState state, const char* target)
{
    ui->chkBusy->setCheckState(state);
    ui->editBusy->setText(QString::fromUtf8(target));
}

void dlgForward_Setting::Display_No_Answer_Forward(Qt::CheckState state, const char* target, const char* time)
{
    ui->chkNoAnswer->setCheckState(state);
    ui->editNoAnswer->setText(QString::fromUtf8(target));
    ui->editBlank->setText(QString::fromUtf8(time));
}

int dlgForward_Setting::initm_cur(QList<QObject*> inputs)
{
    m_lstFocusWidgets = inputs;
    m_iCurFocus = 0;
    return 0;
}

void dlgForward_Setting::setNextFocus(int steps)
{
    stepFocus(steps);
}

void dlgForward_Setting::setPreFocus(int steps)
{
    stepFocus(-steps);
}

void dlgForward_Setting::stepFocus(int steps)
{
    const int count = int(m_lstFocusWidgets.size());
    const int direction = steps < 0 ? -1 : 1;
    if (count == 0)
        return;
    m_iCurFocus = ((m_iCurFocus + steps % count) + count) % count;
    for (int tried = 0; tried < count; ++tried) {
        QWidget* input = qobject_cast<QWidget*>(m_lstFocusWidgets[m_iCurFocus]);
        if (input && input->isEnabled()) {
            input->setFocus();
            return;
        }
        m_iCurFocus = (m_iCurFocus + direction + count) % count;
    }
}
