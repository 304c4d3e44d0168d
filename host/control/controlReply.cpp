#include "host/control/controlReply.h"
#include <QApplication>
#include <QJsonObject>
#include <QTimer>

QJsonValue controlDone()
{
    return QJsonObject{{"ok", true}};
}

QJsonValue controlError(const QString& problem)
{
    return QJsonObject{{"error", problem}};
}

QJsonValue controlUsage(const QString& form)
{
    return QJsonObject{{"error", "usage: " + form}, {"usage", true}};
}

QJsonValue controlOnlySimulated()
{
    return controlError("this phone's lines are real: only simulated ones, of hxPhone without --sip or of "
                        "./run --simulate, do that");
}

void controlRunLater(const std::function<void()>& work, const ControlReply& reply)
{
    QTimer::singleShot(0, qApp, work);
    // Behind the work; a modal box that the work opens runs these from its own loop.
    QTimer::singleShot(0, qApp, [reply] { QTimer::singleShot(0, qApp, [reply] { reply(controlDone()); }); });
}
