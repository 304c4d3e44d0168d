#pragma once
// The keys of all texts that the phone shows: of the code, the forms and the menus.
#include <QMap>
#include <QPair>
#include <QString>

struct ShownKey
{
    QString key;
    QString note; // tells what a key with several meanings means here; mostly empty

    bool operator<(const ShownKey& other) const
    {
        return qMakePair(key, note) < qMakePair(other.key, other.note);
    }
};

// Each key of the source tree at root, and a file that shows it.
using ShownKeys = QMap<ShownKey, QString>;
ShownKeys shownKeys(const QString& root);
