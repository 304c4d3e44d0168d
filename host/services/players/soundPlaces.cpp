#include "host/services/players/soundPlaces.h"
#include <QDir>
#include <QFile>
#include <unistd.h>

QByteArray soundPlaces()
{
    const auto kinds = QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot;
    QStringList all = QDir("/dev/snd").entryList(kinds) + QDir("/dev").entryList({"dsp*"}, kinds);
    for (const QString& folder :
         {qEnvironmentVariable("XDG_RUNTIME_DIR"), QString("/run/user/%1").arg(getuid()), QString("/run")}) {
        for (const char* socket : {"/pulse/native", "/pipewire-0"}) {
            if (!folder.isEmpty() && QFile::exists(folder + socket))
                all.append(folder + socket);
        }
    }
    all.append(qEnvironmentVariable("PULSE_SERVER"));
    all.removeAll(QString());
    return all.join('\n').toUtf8();
}
