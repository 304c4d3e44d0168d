// Writes the phone's table of time zones, from the time-zone data of this machine:
// hxZoneTable FOLDER NAMES FILE. FOLDER holds "zone.tab" and "iso3166.tab"; NAMES says which places have
// another name than the data gives them.
#include "tools/zoneTable/ZoneRows.h"
#include <QFile>
#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 4) {
        fprintf(stderr, "usage: hxZoneTable FOLDER NAMES FILE\n");
        return 2;
    }
    ZoneRows rows;
    if (!rows.Read(argv[1], argv[2])) {
        fprintf(stderr, "hxZoneTable: %s\n", rows.Error().constData());
        return 1;
    }
    QFile file(QString::fromLocal8Bit(argv[3]));
    const QByteArray text = rows.Xml();
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.flush()) {
        fprintf(stderr, "hxZoneTable: cannot write %s\n", argv[3]);
        return 1;
    }
    return 0;
}
