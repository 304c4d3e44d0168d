#pragma once
// The call screen: it comes with a call, over whatever is there, and goes a moment after the last one ended.
// User-interface thread.
#include "host/desktop/displayPlace.h"
#include "host/services/phone/tagCall.h"
#include "support/host/bars.h"
#include <QTimer>
#include <QWidget>
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
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_click_Mute();
    void on_click_VolumeDown();
    void on_click_VolumeUp();
    void on_click_End(); // declines a call that comes in
    void on_click_Answer();

private:
    enum { END_MS = 1500, TICK_MS = 200 };

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
    bool isAsked() const { return m_call.bIncoming && m_call.eState == CALL_RINGING; }
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
    bool m_bMuted = false;         // here, so it ends with the call
    bool m_bVolumeChanged = false; // of a ring, which shows it then
    displayPlace m_display;
    bool m_bBeside = false; // the signage has its place here
};

// Has the call screen follow the phone's calls from now on.
void callScreenInstall();
