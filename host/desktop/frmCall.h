#pragma once
// The call screen: it comes with a call, over whatever is there, and goes a moment after the last one ended.
// User-interface thread.
#include "host/desktop/displayPlace.h"
#include "host/services/phone/tagCall.h"
#include "support/host/bars.h"
#include <QMap>
#include <QTimer>
#include <QWidget>
#include <array>
#include <memory>

class QPainter;
class callAction;
class Ui_frmCall;

class frmCall : public QWidget
{
    Q_OBJECT
public:
    frmCall();
    ~frmCall() override;
    // The call began, changed or ended.
    void onCall(const tagCall& call);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_click_Mute();
    void on_click_VolumeDown();
    void on_click_VolumeUp();
    void on_click_End(); // declines a call that comes in
    void on_click_Answer();
    void on_click_Forward();
    void on_click_Hold();
    void on_click_Transfer();
    void on_click_Keys();
    void on_click_AddCall();
    void on_click_Swap();
    void on_click_OpenDoor();

private:
    enum { END_MS = 1500, TICK_MS = 200 };
    // What can be done in a call, from left to right.
    enum ACTION {
        ACTION_MUTE,
        ACTION_HOLD,
        ACTION_KEYS,
        ACTION_TRANSFER,
        ACTION_ADD,
        ACTION_SWAP,
        ACTION_COUNT
    };

    void open(bool begins);
    void close();
    bool mayShowDisplay() const;
    void showDisplay();
    void layOut();
    void layOutStrip();
    void paintQuestion(QPainter& painter) const;
    void showCall(const tagCall& call);
    void showPicture(const QString& path);
    void showState();
    void showQuestion();
    void showClock();
    void showSound();
    void showSoftKeys();
    void showKeysOfQuestion();
    void tick();
    void changeVolume(int step);
    tagCall mostUrgent(const QList<tagCall>& calls) const;
    tagCall otherCall() const;
    void showOthers();
    void makeActions();
    void showActions();
    void layOutActions();
    bool isAvailable(ACTION action) const;
    void chooseAction(int step);
    bool pressChosen();
    void showPad(bool show);
    bool isAsked() const { return m_call.bIncoming && m_call.eState == CALL_RINGING; }
    bool talks() const { return m_call.eState == CALL_TALKING; }
    bool sendDigit(const QString& text);

    std::unique_ptr<Ui_frmCall> m_ui;
    qSoftKeyBar* m_pSoftKeys = nullptr;
    tagCall m_call;      // the one that is shown
    int m_nLastId = 0;   // of the calls that have begun
    QString m_strNumber; // of who is named; empty when the number stands for the name
    QString m_strDigits; // sent in this call
    int m_nPicture = 0;  // request of the contact's
    QTimer m_tick;
    QTimer m_end;
    std::array<callAction*, ACTION_COUNT> m_actions{};
    int m_nChosen = -1;            // of the actions, by keys; -1: none
    bool m_bPad = false;           // the touch pad for tones is open
    QMap<int, QString> m_names;    // of the calls beside it, by their ids
    QString m_strFailed;           // of a call that could not be made beside this one, for a moment
    bool m_bVolumeChanged = false; // of a ring, which shows it then
    displayPlace m_display;
    bool m_bBeside = false; // the signage has its place here
};

// Has the call screen follow the phone's calls from now on.
void callScreenInstall();
