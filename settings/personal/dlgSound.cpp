#include "settings/personal/dlgSound.h"
#include "frame/configFiles.h"
#include "frame/modSetting.h"
#include "frame/noteBox.h"
#include "support/host/combo.h"
#include "support/host/message.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/ui.h"
#include "ui_dlgSound.h"
#include <QAbstractItemView>
#include <QKeyEvent>
#include <QPointer>
#include <QSignalBlocker>

namespace {

const char* const kRing = "Ring";
const char* const kVolume = "Volume";
const char* const kRingFile = "strRingFile";
const char* const kRingVolume = "nRing";
const char* const kTalkVolume = "nTalkOutput";
constexpr int kDefaultTalkVolume = 50;
constexpr int kToneDelayMs = 1000;
constexpr int kSampleTone = 0x41; // the DTMF key "A"

QPointer<dlgSound> s_pPage;

bool isPadKey(int key)
{
    return (key >= Qt::Key_0 && key <= Qt::Key_9) || key == Qt::Key_NumberSign || key == Qt::Key_Asterisk;
}

} // namespace

dlgSound* getSoundDlg()
{
    return s_pPage;
}

dlgSound::dlgSound(QWidget* parent, tagLeftBarInfo* info)
    : SettingPage(parent, info), ui(new Ui::dlgSound),
      m_preview(nullptr, soundPreview::StoredVolume(), kToneDelayMs, PREVIEW_SOUND)
{
    s_pPage = this;
    ui->setupUi(this);
    BuildFrame(ui->frmBackground, HX_TR("Tones and Volume"), KEYS_CHOICE);
    m_frame.SetSoftKey(SOFT_KEY_IME, "Ringtone Manager", HX_TR("Ringtone Manager"),
                       SLOT(on_click_SoundManager()));
    InitData();
}

dlgSound::~dlgSound() = default;

void dlgSound::InitData()
{
    fillList();
    ui->cmbBoxRingFile->setFocusPolicy(Qt::StrongFocus);
    connect(ui->cmbBoxRingFile, &QComboBox::highlighted, this, &dlgSound::on_ring_highlightted_changed);
    connect(ui->cmbBoxRingFile, &QComboBox::currentIndexChanged, this,
            &dlgSound::on_ring_highlightted_changed);
    connect(ui->barRing, &QVolumeBar::value_changed, this, &dlgSound::on_play_ring);
}

void dlgSound::fillList()
{
    const QSignalBlocker silent(ui->cmbBoxRingFile);
    ui->cmbBoxRingFile->clear();
    m_strRingFile = NUX_SubClass::nuxGetRegistryString(USER_INI, kRing, kRingFile, "");
    qFillMediaCommboView(ui->cmbBoxRingFile, MEDIA_FILE_XML, "sound");
    qSelectComboBoxItem(ui->cmbBoxRingFile, m_strRingFile);
}

// What is loaded makes no sound.
void dlgSound::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    const QSignalBlocker silentRing(ui->barRing);
    const QSignalBlocker silentTalk(ui->barTalk);
    const QSignalBlocker silentList(ui->cmbBoxRingFile);
    ui->barRing->setValue(soundPreview::StoredVolume());
    ui->barTalk->setValue(nuxGetRegistryInt(USER_INI, kVolume, kTalkVolume, kDefaultTalkVolume));
    ui->cmbBoxRingFile->setFocus();
    m_strRingFile = NUX_SubClass::nuxGetRegistryString(USER_INI, kRing, kRingFile, "");
    if (!qSelectComboBoxItem(ui->cmbBoxRingFile, m_strRingFile))
        ui->cmbBoxRingFile->setCurrentIndex(0);
    m_preview.SetVolume(ui->barRing->value());
    m_preview.stopPreview();
}

void dlgSound::hideEvent(QHideEvent* event)
{
    m_preview.stopPreview();
    SettingPage::hideEvent(event);
}

// The talk bar sounds only while the page is active.
bool dlgSound::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        connect(ui->barTalk, &QVolumeBar::value_changed, this, &dlgSound::on_talk_volume_changed,
                Qt::UniqueConnection);
    } else if (event->type() == QEvent::WindowDeactivate) {
        m_preview.stopPreview();
        disconnect(ui->barTalk, &QVolumeBar::value_changed, this, &dlgSound::on_talk_volume_changed);
    }
    return SettingPage::event(event);
}

void dlgSound::play(int index, int delayMs)
{
    m_preview.SetDelay(delayMs);
    dev_set_output_volume(ui->barRing->value());
    m_preview.SetVolume(ui->barRing->value());
    const chString file = qGetExternValue(ui->cmbBoxRingFile, index);
    // One that still waits would begin a second time.
    if (file.IsEmpty() || !m_preview.IsActive())
        m_preview.stopPreview();
    if (!file.IsEmpty())
        m_preview.startPreview(file);
}

void dlgSound::on_ring_highlightted_changed(int index)
{
    play(index, kToneDelayMs);
}

void dlgSound::on_play_ring()
{
    play(ui->cmbBoxRingFile->currentIndex(), 0);
}

void dlgSound::on_talk_volume_changed()
{
    m_preview.stopPreview();
    dev_set_output_volume(ui->barTalk->value());
    if (!m_bTalkByKey)
        phone_PlayDTMF(kSampleTone);
    m_bTalkByKey = false;
}

void dlgSound::on_check_volume()
{
    if (isVisible())
        on_ring_highlightted_changed(ui->cmbBoxRingFile->currentIndex());
}

bool dlgSound::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && isChildOf(watched, this) &&
        filterKey(watched, static_cast<QKeyEvent*>(event)->key()))
        return true;
    if (event->type() == QEvent::FocusOut && watched == ui->cmbBoxRingFile->view())
        on_check_volume();
    return SettingPage::eventFilter(watched, event);
}

// True for a key that is the page's own.
bool dlgSound::filterKey(QObject* receiver, int key)
{
    if (isChildOf(receiver, ui->cmbBoxRingFile)) {
        if (qIsOkKey(key))
            on_ring_highlightted_changed(ui->cmbBoxRingFile->currentIndex());
        return isPadKey(key);
    }
    return (key == Qt::Key_Left || key == Qt::Key_Right) && stepBar(receiver, key);
}

bool dlgSound::stepBar(QObject* receiver, int key)
{
    const bool isTalk = isChildOf(receiver, ui->barTalk);
    if (!isTalk && !isChildOf(receiver, ui->barRing))
        return false;
    QVolumeBar* bar = isTalk ? ui->barTalk : ui->barRing;
    m_bTalkByKey = isTalk;
    if (key == Qt::Key_Left)
        bar->MinusValue();
    else
        bar->AddValue();
    // A bar at its end has not moved, and the next finger is to be heard.
    m_bTalkByKey = false;
    return true;
}

int dlgSound::SaveConfig2File()
{
    const tagRegistryValue volumes[] = {{kRingVolume, fmtString("%d", ui->barRing->value())},
                                        {kTalkVolume, fmtString("%d", ui->barTalk->value())}};
    int saved = 1;
    const int index = ui->cmbBoxRingFile->currentIndex();
    if (index >= 0) {
        m_strRingFile = qGetExternValue(ui->cmbBoxRingFile, index);
        saved = nuxSetRegistryString(USER_INI, kRing, kRingFile, m_strRingFile);
    }
    saved = registrySetStrings(registryOpen(USER_INI, kVolume), volumes, 2) && saved;
    m_preview.SetVolume(ui->barRing->value());
    return saved;
}

void dlgSound::on_click_Save()
{
    m_preview.stopPreview();
    if (!noteUnlessSaved(SaveConfig2File(), this))
        return;
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_SOUND, 0);
    accept();
}

void dlgSound::on_click_SoundManager()
{
    m_preview.stopPreview();
    m_strKept = qGetExternValue(ui->cmbBoxRingFile, ui->cmbBoxRingFile->currentIndex());
    settingOpenPage("Sound Manager", this);
}

void dlgSound::reloadSound()
{
    const chString kept = m_strKept.IsEmpty()
                              ? qGetExternValue(ui->cmbBoxRingFile, ui->cmbBoxRingFile->currentIndex())
                              : m_strKept;
    m_strKept = "";
    fillList();
    const QSignalBlocker silent(ui->cmbBoxRingFile);
    if (!qSelectComboBoxItem(ui->cmbBoxRingFile, kept))
        ui->cmbBoxRingFile->setCurrentIndex(0);
}
