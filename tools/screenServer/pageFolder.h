#pragma once
// The files of the page: read, never listed, never left.
#include <QByteArray>
#include <QString>
#include <optional>

class PageFolder
{
public:
    explicit PageFolder(const QString& folder);
    // False where there is no page.
    bool isThere() const;
    // path: as in an address, relative to the folder. Nothing for what is no file below it.
    std::optional<QByteArray> read(const QByteArray& path) const;
    static QByteArray contentType(const QByteArray& path);

private:
    QString m_strFolder; // without links
};
