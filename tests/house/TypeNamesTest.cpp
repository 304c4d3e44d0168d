// Rooms are linked into one program for the tests, where two types of one name are one: what the linker keeps
// for the larger destroys the smaller. So no two headers of the phone define a type of the same name.
#include "tests/house/sourceTree.h"
#include <QMap>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

// A process of its own shares no program with the phone.
bool isOfThePhone(const QString& path)
{
    return !path.startsWith("sip/");
}

QStringList typesOf(const SourceFile& file)
{
    static const QRegularExpression definition("^(?:struct|class)(?: [A-Z]+_API)? (\\w+)(?: final)?"
                                               "(?:\\s*:[^;\\n]*)?\\s*\\{",
                                               QRegularExpression::MultilineOption);
    QStringList names;
    for (auto it = definition.globalMatch(file.text); it.hasNext();)
        names.append(it.next().captured(1));
    return names;
}

} // namespace

TEST(TypeNames, AreDefinedByOneHeaderOfThePhone)
{
    QMap<QString, QString> headers;
    for (const SourceFile& file : sourceFiles(phoneRooms(), {".h"})) {
        if (!isOfThePhone(file.path))
            continue;
        for (const QString& name : typesOf(file)) {
            EXPECT_FALSE(headers.contains(name))
                << qPrintable(name + ": " + file.path + " and " + headers[name]);
            headers[name] = file.path;
        }
    }
    EXPECT_GT(headers.size(), 300);
}
