#pragma once
// The rows "key=value" of the sections of a key file, in the order of the file. Lines that begin with ';' or
// '#' are remarks.
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPair>

using KeyRowList = QList<QPair<QByteArray, QByteArray>>;

using KeySections = QHash<QByteArray, KeyRowList>; // by their names

KeySections KeySectionsOf(const QByteArray& text);
KeyRowList KeyRows(const QByteArray& text, const QByteArray& section);
// Of the first row with that key; null without one.
QByteArray KeyRowValue(const KeyRowList& rows, const QByteArray& key);
