#include "tools/signServer/KeyRows.h"

KeyRowList KeyRows(const QByteArray& text, const QByteArray& section)
{
    KeyRowList rows;
    QByteArray current;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line[0] == ';' || line[0] == '#')
            continue;
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            current = line.mid(1, line.size() - 2).trimmed();
        else if (current == section && equals > 0)
            rows.append({line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return rows;
}

QByteArray KeyRowValue(const KeyRowList& rows, const QByteArray& key)
{
    for (const auto& row : rows) {
        if (row.first == key)
            return row.second;
    }
    return QByteArray();
}
