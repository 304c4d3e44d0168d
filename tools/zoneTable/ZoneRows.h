#pragma once
// The zones of all countries, each with the hours of its standard time and the name that a person looks for:
// the country and, where it says more, the place.
#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

class ZoneRows
{
public:
    // false when a file cannot be read or names a zone without rules: Error() says which.
    bool Read(const char* folder, const char* names);
    const QByteArray& Error() const { return m_error; }
    // The same data make the same bytes: by offset, then by name.
    QByteArray Xml() const;

private:
    struct Row
    {
        int seconds; // of standard time
        QString name;
        QByteArray rule; // name of the zone's rules in the data
    };

    bool ReadRows(const QByteArray& path, int columns, QList<QList<QByteArray>>& rows);
    bool ReadYear(const QByteArray& path);
    bool Add(const QByteArray& country, const QByteArray& rule);
    QString NameOf(const QByteArray& country, const QByteArray& rule) const;
    bool Fail(const QByteArray& error);

    QMap<QByteArray, QString> m_countries;
    QMap<QByteArray, QString> m_names; // by rule: a whole name, which stands as it is
    QList<Row> m_rows;
    QByteArray m_version;
    int m_year = 0; // of the data
    QByteArray m_error;
};
