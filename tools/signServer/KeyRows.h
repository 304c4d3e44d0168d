#pragma once
// The rows "key=value" of one section of a key file, in the order of the file. Lines that begin with ';' or
// '#' are remarks.
#include <QByteArray>
#include <QList>
#include <QPair>

using KeyRowList = QList<QPair<QByteArray, QByteArray>>;

KeyRowList KeyRows(const QByteArray& text, const QByteArray& section);
// Of the first row with that key; null without one.
QByteArray KeyRowValue(const KeyRowList& rows, const QByteArray& key);
