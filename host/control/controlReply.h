#pragma once
// What the commands of the control socket are made of, and how they answer.
#include <QJsonValue>
#include <QStringList>
#include <functional>

// Takes the command's JSON value.
using ControlReply = std::function<void(const QJsonValue&)>;
// A handler answers by calling reply exactly once, now or later.
using ControlHandler = void (*)(const QStringList& arguments, const ControlReply& reply);

QJsonValue controlDone();
QJsonValue controlError(const QString& problem);
// The words are not of the command's form.
QJsonValue controlUsage(const QString& form);
// Of a command that moves simulated lines, in a phone that has real ones.
QJsonValue controlOnlySimulated();
// Runs work from the event loop, and replies when it is done or has opened a modal box.
void controlRunLater(const std::function<void()>& work, const ControlReply& reply);
