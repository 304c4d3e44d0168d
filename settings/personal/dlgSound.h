#pragma once
// The page "Sound Set": ring tone, ring volume and talk volume, all of which can be heard while they are set.
// User-interface thread.
#include "frame/settingPage.h"
#include "media/soundPreview.h"
#include <memory>

namespace Ui {
class dlgSound;
}
class QVolumeBar;

class dlgSound : public SettingPage
{
    Q_OBJECT
public:
    dlgSound(QWidget* parent, tagLeftBarInfo* info);
    ~dlgSound() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Files have come or gone: fills the list again. What was chosen stays, or else the first is.
    void reloadSound();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

protected slots:
    void on_click_Save() override;
    void on_click_SoundManager();

private slots:
    // Plays the item a moment later, so that somebody may run through the list.
    void on_ring_highlightted_changed(int index);
    void on_play_ring();
    void on_talk_volume_changed();
    void on_check_volume();

private:
    void InitData();
    void fillList();
    int SaveConfig2File();
    void play(int index, int delayMs);
    bool filterKey(QObject* receiver, int key);
    bool stepBar(QObject* receiver, int key);

    std::unique_ptr<Ui::dlgSound> ui;
    soundPreview m_preview;
    chString m_strRingFile;    // stored
    chString m_strKept;        // chosen when the manager's page was opened; empty: it was not from here
    bool m_bTalkByKey = false; // the talk bar is being moved by a key
};

// The page; null until it is opened for the first time.
HX_MODULE_API dlgSound* getSoundDlg();
