#pragma once
// The dial screen: a number or an address by touch, keys or keyboard, whom it may mean, and the line it goes
// out on; for a call, or to put one through or send it on. The hotline calls from it when nothing is typed.
// User-interface thread.
#include "host/desktop/dialDirectory.h"
#include "host/services/phone/tagCall.h"
#include <QDialog>
#include <QMap>
#include <QTimer>
#include <memory>

class hostPage;
class QKeyEvent;
class Ui_frmDial;

enum DIAL_FOR {
    DIAL_CALL,
    DIAL_TRANSFER, // of a call that talks: to a number, or to another one that talks
    DIAL_FORWARD   // of a call that rings
};

class frmDial : public QDialog
{
    Q_OBJECT
public:
    frmDial();
    ~frmDial() override;
    // Comes up with a number that is begun. line: -1 any, 0 to 3, or PHONE_LINE_PSTN.
    void openToCall(const QString& typed, int line);
    // The number is for that call; the screen goes when the call does.
    void openForCall(DIAL_FOR purpose, int call);
    void onCall(const tagCall& call);

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void on_click_Call();
    void on_click_IME();
    void on_click_Delete();
    void on_click_Back();

private:
    void begin(DIAL_FOR purpose, int call, const QString& typed);
    void showPurpose();
    void showEntries();
    void renewEntries();
    void cleanNumber();
    void typeSign(QChar sign);
    bool endsNumber(const QString& sign) const;
    bool pressKey(QObject* watched, const QKeyEvent* key);
    bool stepDown();
    bool stepUp();
    void startHotline();
    void callHotline();
    void useNumber(const QString& number, int line);
    QList<tagDialEntry> callsToConnect();
    void connectWith(int call);

    std::unique_ptr<Ui_frmDial> m_ui;
    std::unique_ptr<hostPage> m_pPage;
    std::unique_ptr<dialDirectory> m_pDirectory;
    DIAL_FOR m_eFor = DIAL_CALL;
    int m_nCall = 0;            // that the number is for
    QMap<int, QString> m_names; // of the other calls, by their ids
    QTimer m_hotline;
    QString m_strHotline;
};

// The one dial screen, made with its first use. Opens it for a call.
void dialScreenOpen(const QString& typed = QString(), int line = -1);
void dialScreenOpenFor(DIAL_FOR purpose, int call);
