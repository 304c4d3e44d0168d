#pragma once
// The call screen: it comes with a call, over whatever is there, and goes a moment after the last one ended.
// User-interface thread.
#include "host/desktop/callActionRow.h"
#include "host/desktop/callLayout.h"
#include "host/desktop/callerPicture.h"
#include "host/desktop/displayPlace.h"
#include "host/desktop/pressGuard.h"
#include "host/services/phone/tagCall.h"
#include "support/host/bars.h"
#include <QMap>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

class QPainter;
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
    // Keys that mean the call wherever the user is; of the windows over this one.
    bool eventFilter(QObject* window, QEvent* event) override;
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private slots:
    void on_click_Mute();
    void on_click_VolumeDown();
    void on_click_VolumeUp();
    void on_click_End(); // declines a call that comes in; a conference ends as a whole
    void on_click_Answer();
    void on_click_Forward();
    void on_click_Hold();
    void on_click_Video();
    void on_click_Transfer();
    void on_click_Keys();
    void on_click_AddCall();
    void on_click_Join(); // or apart
    void on_click_Swap();
    void on_click_OpenDoor();

private:
    enum { END_MS = 1500, TICK_MS = 200, TONES_MS = 4000, OTHERS_MAX = 3 };

    void guardPresses(const tagCall& next);
    void open(bool begins);
    void rememberUnder(int call);
    void bringBackUnder(const tagCall& call);
    void close();
    bool mayShowDisplay() const;
    void showDisplay();
    CALL_LAYOUT layoutNow() const;
    void layOut();
    bool hasPicture() const;
    bool isCameraOpen() const;
    void setFull(bool full);
    void pressOk();
    bool pressCallKey(int key);
    void goBack();
    bool leavesFull(int key) const;
    void paintQuestion(QPainter& painter) const;
    void showCall(const tagCall& call);
    void showPicture(const tagCall& call);
    void showState();
    void showNames();
    void showQuestion();
    void showClock();
    void showSound();
    void showSoftKeys();
    void showKeysOfQuestion();
    void tick();
    void changeVolume(int step);
    tagCallStreams streams() const;
    QString nameOf(const tagCall& call);
    QString whoOf(const tagCall& call);
    int secondsShown() const;
    void showOthers();
    // call: what it is about; 0: none that could end.
    // told: in the language of the moment at which it is looked at.
    void tellForAMoment(std::function<QString()> told, int call);
    void forgetTold(const tagCall& call);
    void connectActions();
    void showActions();
    void showPad(bool show);
    bool isAsked() const { return m_call.bIncoming && m_call.eState == CALL_RINGING; }
    bool talks() const { return m_call.eState == CALL_TALKING; }
    bool isOver() const { return m_call.eState == CALL_ENDED; }
    bool sendDigit(const QString& text);

    std::unique_ptr<Ui_frmCall> m_ui;
    qSoftKeyBar* m_pSoftKeys = nullptr;
    tagCall m_call;      // the one that is shown, with whom it talks together
    int m_nLastId = 0;   // of the calls that have begun
    QString m_strNumber; // of who is named; empty when the number stands for the name
    QString m_strDigits; // sent in this call
    int m_nPicture = 0;  // request of the contact's
    callerPicture m_caller{this};
    QTimer m_digitsShown; // in the place of the duration
    QTimer m_tick;
    QTimer m_end;
    callActionRow m_actions;
    pressGuard m_presses;
    QPointer<QWidget> m_under;       // the window that a waiting call came up over
    int m_nOver = 0;                 // that call
    bool m_bPad = false;             // the touch pad for tones is open
    QMap<QString, QString> m_names;  // of the calls, by number and what came along; empty: the number is it
    std::function<QString()> m_told; // what could not be done beside this call, for a moment
    int m_nFailed = 0;               // the call that it is about
    QTimer m_failedShown;
    bool m_bVolumeChanged = false; // a moment ago; where there is no place for it, it is shown then
    QTimer m_volumeShown;
    displayPlace m_display;
    bool m_bBeside = false; // the signage has its place here
    CALL_LAYOUT m_eLayout = CALL_LAYOUT_WHOLE;
    bool m_bFull = false;    // a picture is wanted over the whole screen
    int m_nPictured = 0;     // the last call whose picture has been here
    int m_nBehind = 0;       // the call whose picture is behind all else; 0: none
    bool m_bTouched = false; // by a finger that is still there
};

// Has the call screen follow the phone's calls from now on.
void callScreenInstall();
