#include "host/services/storage/storageList.h"
#include "support/file/deviceRoot.h"
#include "support/host/text.h"
#include <QDir>
#include <QFile>
#include <algorithm>

namespace {

const char* const kFolder = "/storage";

QByteArray labelOf(const QByteArray& source, const QByteArray& name)
{
    const QByteArray last = source.mid(source.lastIndexOf('/') + 1);
    return last.isEmpty() ? name : last;
}

// The table writes blanks and the like as "\040".
QByteArray unescaped(const QByteArray& text)
{
    QByteArray result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        bool isNumber = false;
        const int code = text[i] == '\\' ? text.mid(i + 1, 3).toInt(&isNumber, 8) : 0;
        result += isNumber ? static_cast<char>(code) : text[i];
        i += isNumber ? 3 : 0;
    }
    return result;
}

storageList::tagEntry entryOf(const QByteArray& name, const QByteArray& label, const QByteArray& source)
{
    storageList::tagEntry entry;
    entry.nType = storageList::typeOf(name);
    entry.path = QByteArray(kFolder) + '/' + name;
    entry.name = label;
    entry.source = source;
    return entry;
}

QList<storageList::tagEntry> foldersOf(const QString& folder)
{
    QList<storageList::tagEntry> entries;
    for (const QFileInfo& info : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QByteArray name = info.fileName().toUtf8();
        const QByteArray source = info.symLinkTarget().toUtf8();
        entries.append(entryOf(name, labelOf(source, name), source));
    }
    return entries;
}

QList<storageList::tagEntry> mounts()
{
    QList<storageList::tagEntry> entries;
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    if (!table.open(QIODevice::ReadOnly))
        return entries;
    for (const auto& [name, source] : storageList::mountsIn(table.readAll(), kFolder))
        entries.append(entryOf(name, name, source));
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return entries;
}

} // namespace

STORAGE_TYPE storageList::typeOf(const QByteArray& name)
{
    const QByteArray lower = name.toLower();
    const bool isCard =
        lower.startsWith("mmc") ||
        (lower.startsWith("sd") &&
         (lower.size() == 2 || (lower[2] >= '0' && lower[2] <= '9') || lower.startsWith("sdcard")));
    return isCard ? STORAGE_SD : STORAGE_USB;
}

// Columns: number, parent, device, root, mount point, options, optional fields up to "-", type, source.
QList<QPair<QByteArray, QByteArray>> storageList::mountsIn(const QByteArray& mountInfo,
                                                           const QByteArray& folder)
{
    QList<QPair<QByteArray, QByteArray>> found;
    for (const QByteArray& line : mountInfo.split('\n')) {
        const QByteArrayList fields = line.split(' ');
        const qsizetype mark = fields.indexOf("-");
        if (fields.size() < 5 || mark < 0 || mark + 2 >= fields.size())
            continue;
        const QByteArray place = unescaped(fields[4]);
        const QByteArray name = place.mid(folder.size() + 1);
        if (place.startsWith(folder + '/') && !name.isEmpty() && !name.contains('/'))
            found.append({name, fields[2] + ' ' + unescaped(fields[mark + 2])});
    }
    return found;
}

QList<storageList::tagEntry> storageList::read()
{
    return deviceGetRoot().IsEmpty() ? mounts() : foldersOf(toQString(devicePath(kFolder)));
}
