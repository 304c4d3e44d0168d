#pragma once
// The whole phone with one line, and files in place of its loudspeaker and microphone, used as a finger
// would.
#include "tests/kit/plain/controlLink.h"
#include "tests/kit/plain/recordedSound.h"
#include <QJsonObject>
#include <QPoint>
#include <QProcess>
#include <QTemporaryDir>
#include <cstdint>

struct tagPhoneSetup
{
    QByteArray user;
    QByteArray password;
    uint32_t server = 0;
    QByteArray says;           // in the words of HX_SOUND_SOURCE
    QByteArray shows = "none"; // in those of HX_PICTURE_SOURCE
    bool bRecords = true;      // what it hears; else that goes nowhere
    bool bEncrypts = false;
    bool bProcesses = false; // takes echo and noise out of what it says, a tone as well
};

class TalkingPhone
{
public:
    enum : int { HEARD_RATE = 16000, WAIT_MS = 20000 };

    TalkingPhone() = default;
    ~TalkingPhone();

    // To the home screen, with its line registered. False when it does not come so far.
    bool start(const tagPhoneSetup& setup);
    bool dial(const QByteArray& number);
    // Somebody calls: the screen can be answered.
    bool rings();
    // After rings(): a finger on the key, and nothing else.
    bool answer();
    bool talks();
    bool hangUp();
    // What is on the screen, into a PNG file.
    bool shot(const QString& file) { return does({"shot", file}); }
    // The facts of the call, none without one.
    QJsonObject call();
    // All that its loudspeaker has got, at HEARD_RATE.
    QString heardFile() const { return m_root.filePath("heard.raw"); }
    kit::RecordedSound heard() const { return kit::RecordedSound(heardFile()); }
    QString filePath(const QString& name) const { return m_root.filePath(name); }
    // Its process for sound; 0 when there is none.
    qint64 mediaPid() const;

private:
    // False when the phone refuses, or is gone.
    bool does(const QStringList& command);
    bool comesTo(const char* page);
    QJsonArray widgets();
    // Somewhere on the topmost window. False when it is not there.
    bool find(const QString& widget, QPoint& middle);
    bool touch(const QPoint& place);
    bool setAccount(const tagPhoneSetup& setup);
    bool isRegistered();

    QTemporaryDir m_root;
    QProcess m_process;
    ControlLink m_link;
    QPoint m_answerKey;
};
