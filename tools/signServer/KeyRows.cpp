#include "tools/signServer/KeyRows.h"

KeySections KeySectionsOf(const QByteArray& text)
{
    KeySections sections;
    QByteArray current;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line.isEmpty() || line[0] == ';' || line[0] == '#')
            continue;
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            current = line.mid(1, line.size() - 2).trimmed();
        else if (equals > 0)
            sections[current].append({line.left(equals).trimmed(), line.mid(equals + 1).trimmed()});
    }
    return sections;
}

KeyRowList KeyRows(const QByteArray& text, const QByteArray& section)
{
    return KeySectionsOf(text).value(section);
}

QByteArray KeyRowValue(const KeyRowList& rows, const QByteArray& key)
{
    for (const auto& row : rows) {
        if (row.first == key)
            return row.second;
    }
    return QByteArray();
}
