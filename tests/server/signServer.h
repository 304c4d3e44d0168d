#pragma once
// A running hxSignServer with a folder of its own, and a plain socket to talk to it, so that a test sees
// every byte that it sends.
#include <QByteArray>
#include <QList>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

struct Answer
{
    int status = 0;                      // 0: what came is no HTTP answer
    QMap<QByteArray, QByteArray> fields; // names in lower case
    QByteArray body;
    QByteArray raw;
    bool ended = false; // the server has closed the connection
    qint64 ms = 0;      // until it was complete

    qint64 announced() const { return fields.value("content-length", "-1").toLongLong(); }
};

// A connection to the server; it reads with a deadline.
class Wire
{
public:
    enum Connects { MustConnect, MayFail };
    explicit Wire(int port, Connects connects = MustConnect);
    ~Wire();
    void send(const QByteArray& bytes) const;
    // The other side may be gone already.
    void trySend(const QByteArray& bytes) const;
    // Everything until the server closes, or until the deadline.
    Answer readAll(int deadlineMs = 10000) const;
    // What has come as soon as it is so many bytes.
    QByteArray readFor(qint64 bytes, int deadlineMs = 10000) const;
    // One answer of the length that its head tells, on a connection that goes on.
    Answer readOne(int deadlineMs = 10000);

private:
    int m_socket;
    QByteArray m_left; // received behind the last answer
};

class SignServerTest : public testing::Test
{
protected:
    SignServerTest();
    ~SignServerTest() override;

    void start(const QStringList& options = {});
    void startProgram(const QString& program, const QStringList& options = {});
    void stop();
    QString path(const QByteArray& name) const { return m_folder.path() + "/" + QString::fromUtf8(name); }
    void write(const QByteArray& name, const QByteArray& bytes) const;
    QByteArray log() const;

    // Fields: lines with their ends. The connection ends after the answer.
    Answer get(const QByteArray& target, const QByteArray& fields = {}, int deadlineMs = 10000) const;
    Answer ask(const QByteArray& method, const QByteArray& target, const QByteArray& body = {}) const;
    // As the phone asks; "aabbcc" is the phone's hardware key.
    Answer enroll(const QByteArray& name = "Lobby", const QByteArray& phone = "aabbcc",
                  const QByteArray& key = "key", const QByteArray& password = "word") const;
    Answer schedule(const QByteArray& phone = "aabbcc") const;
    Answer file(const QByteArray& name, const QByteArray& type = "media",
                const QByteArray& fields = {}) const;
    QByteArray fileTarget(const QByteArray& name, const QByteArray& type = "media") const;

    int m_port = 0;
    QProcess m_process;
    QTemporaryDir m_folder;
};

// The error's text of a reply, "registered" for a good one, and null for what is neither.
QByteArray resultOf(const QByteArray& reply);
// The attributes of all elements of that name; each row as "a=1 b=2".
QList<QByteArray> rowsOf(const QByteArray& reply, const QByteArray& element);
// True when it can be read to its end.
bool isXml(const QByteArray& reply);
// Bytes that repeat nowhere soon; another kind for another seed.
QByteArray noise(int size, unsigned seed = 1);
