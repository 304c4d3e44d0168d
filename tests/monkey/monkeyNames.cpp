#include "places.h"
#include "tests/monkey/monkeyHand.h"
#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace {

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void addMatches(const QString& text, const char* pattern, QStringList& names)
{
    const QRegularExpression expression(pattern);
    for (auto match = expression.globalMatch(text); match.hasNext();)
        names.append(match.next().captured(1).replace("&amp;", "&"));
}

QDir menuFolder()
{
    return QDir(HX_SOURCE_DIR "/rootfs/menus");
}

} // namespace

QStringList monkeyMenuFiles()
{
    return menuFolder().entryList({"*.xml"}) + QStringList{"ipcameradata.xml", "doorphonedata.xml"};
}

QStringList monkeyPageNames()
{
    QStringList names;
    addMatches(textOf(HX_SOURCE_DIR "/frame/pageTable.cpp"), "\\{\"([^\"]+)\", +MATCH_", names);
    for (const QString& file : menuFolder().entryList({"*.xml"}))
        addMatches(textOf(menuFolder().filePath(file)), "<item title=\"([^\"]+)\"", names);
    // A name that ends with a number, and one that nobody has.
    names += QStringList{"Account1", "Door Phone1", "Nowhere"};
    names.removeDuplicates();
    // A restart each few seconds would leave no time for anything else: the icons in their menu are enough.
    names.removeAll("Factory");
    names.removeAll("Reboot");
    return names;
}
