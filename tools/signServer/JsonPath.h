#pragma once
// A value in a JSON document, named by its path: "results.0.name" is the name of the first of the results.
#include <QByteArray>
#include <QJsonValue>
#include <QString>

// Text of a text, a number or a truth value; null for what is not there, is null, or is a list or an object.
QString JsonText(QJsonValue value, const QByteArray& path);
