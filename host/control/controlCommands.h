#pragma once
#include "host/control/controlServer.h"
#include <QStringList>

// Runs one command. reply is called once, now or later, with the command's JSON value.
void controlRun(const QStringList& words, const controlServer::Reply& reply);

// What the tables of commands are made of. A handler answers by calling reply exactly once.
using ControlHandler = void (*)(const QStringList& arguments, const controlServer::Reply& reply);
QJsonValue controlDone();
QJsonValue controlError(const QString& problem);
// The words are not of the command's form.
QJsonValue controlUsage(const QString& form);
// Runs work from the event loop, and replies when it is done or has opened a modal box.
void controlRunLater(const std::function<void()>& work, const controlServer::Reply& reply);
