#pragma once
// A phone that nobody here wrote, with files in place of sound devices, driven over its control port.
#include "tests/kit/plain/sideProgram.h"
#include <QByteArray>
#include <QTcpSocket>
#include <cstdint>

// What it says and hears. Unless something else is said here it says what it hears.
struct tagBaresipSound
{
    QByteArray codec; // the only one that it knows, as "PCMA/8000/1"; empty: both kinds of G.711
    QString says;     // a WAV file of the codec's rate and channels
    bool bRecords = false;
    bool bEncrypts = false; // it talks in no other way
    uint32_t nThrough = 0;  // port of a proxy on the way to the server
    QByteArray settings;    // further ones, a line each
};

class BaresipProcess
{
public:
    // Of tagBaresipSound. film: without sound, long enough for the call. module: what makes pictures of the
    // codec.
    static QByteArray pictureSettings(const QByteArray& module, const QString& film);
    // Registers at that port. False when it does not come up: output() says why.
    bool start(const QByteArray& user, uint32_t server, const QByteArray& password,
               bool answersItself = false, const tagBaresipSound& sound = {});
    // False when it does not tell that event in time; its text holds the word.
    bool tells(const QByteArray& event, int ms = 15000);
    // The same for what it prints, from its start on.
    bool prints(const QByteArray& text, int ms = 15000);
    void command(const QByteArray& name, const QByteArray& parameters = {});
    // Calls that user of the server at the port.
    void dial(const QByteArray& user, uint32_t server);
    QByteArray output();
    qint64 pid() const { return m_program.pid(); }
    // What it has recorded of the other side in the last call: a WAV file, or none.
    QString recorded() const;

private:
    QByteArray soundSettings(const tagBaresipSound& sound) const;

    kit::SideProgram m_program;
    QTcpSocket m_control;
    QByteArray m_told;
};
