#pragma once
// What the signage folder of a device root holds, read from outside while the phone runs or is dead.
#include <QByteArray>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

// All contents that a file ever had on the server, as MD5.
using KnownVersions = QMap<QString, QSet<QByteArray>>;
// The one that it has now.
using WantedFiles = QMap<QString, QByteArray>;

class DeckFolder
{
public:
    explicit DeckFolder(const QString& root) : m_path(root + "/rundata/nDeck/") {}

    // Each of these: empty, or the first thing that is wrong.
    // No file that is in use, or waits for its use, is anything but a whole content of the server.
    QString wrongFile(const KnownVersions& known) const;
    // The list is whole and names nothing twice; a file in use that it names has the content that it tells,
    // or that of the newer file that it tells to wait.
    QString wrongRecord() const;
    // Files and list are those of the server, and nothing is on its way.
    QString outOfStep(const WantedFiles& wanted) const;

    // All but the client's own; hidden ones too.
    QStringList files() const;
    // Bytes of all files there.
    qint64 size() const;
    QByteArray md5(const QString& name) const;

private:
    struct Record
    {
        QString path;
        QByteArray md5;
    };
    // False when the list cannot be read to its end.
    bool records(QList<Record>& list) const;

    QString m_path;
};
