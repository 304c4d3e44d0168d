// The rules of the house that can be read from the source: who may include whom, who may touch files,
// and that a class lives in the files that have its name.
#include "tests/house/sourceTree.h"
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

namespace {

const QStringList LibraryRooms = {"support/text", "support/container", "support/xml", "support/file"};

const QStringList ModuleRooms = {"frame", "settings/system", "settings/call", "settings/personal",
                                 "media", "signage",         "applets",       "calibration"};

// What the home screen and the host's own pages are built on.
const QStringList UnderTheDesktop = {"host/services", "host/look", "host/screen",   "host/input",
                                     "host/binding",  "host/menu", "host/managers", "host/widgets"};

// What a room may include besides the library, the contract and itself.
const QMap<QString, QStringList> AllowedRooms = {
    {"frame", {}},
    {"settings/system", {"frame"}},
    {"settings/call", {"frame", "media"}},
    {"settings/personal", {"frame", "media", "signage"}},
    {"media", {"frame"}},
    {"signage", {"frame", "media"}},
    {"applets", {"frame", "signage"}},
    {"calibration", {"frame"}},
    {"host/services/system", {}},
    {"host/services/clock", {"host/services/system"}},
    {"host/services/pictures", {"host/services/system"}},
    {"host/services/keyfiles", {"host/services/system"}},
    {"host/services/language", {"host/services/keyfiles"}},
    {"host/services/messages", {"host/services/system"}},
    {"host/services/storage", {"host/services/system", "host/services/messages"}},
    {"host/services/transfers", {"host/services/system", "host/services/messages", "host/services/storage"}},
    {"host/services/players", {"host/services/system", "host/services/messages"}},
    {"host/services/phone",
     {"host/services/system", "host/services/messages", "host/services/players", "sip"}},
    {"host/look", {}},
    {"host/screen", {"host/services/system", "host/look"}},
    {"host/input", {}},
    {"host/touch", {"host/look", "host/screen"}},
    {"host/binding", {}},
    {"host/menu", {}},
    {"host/managers", {}},
    {"host/widgets", {"host/services", "host/look", "host/screen", "host/menu"}},
    {"host/desktop", UnderTheDesktop},
    {"host/web", {"host/services", "host/look", "host/widgets"}},
    {"host/control", UnderTheDesktop + QStringList{"host/desktop", "host/touch"}},
    {"players", {"host/services", "sip"}},
    {"sip", {}},
};

bool isBelow(const QString& path, const QString& room)
{
    return path.startsWith(room + "/");
}

bool isBelowAny(const QString& path, const QStringList& rooms)
{
    for (const QString& room : rooms) {
        if (isBelow(path, room))
            return true;
    }
    return false;
}

QVector<SourceFile> phoneCode()
{
    return sourceFiles(phoneRooms(), {".cpp", ".h"});
}

std::string place(const SourceFile& file, int line)
{
    return file.path.toStdString() + ":" + std::to_string(line);
}

// Runs check(file, include) on every include of a room's files that the build does not make.
template <typename Check>
void forEachInclude(const QStringList& rooms, Check check)
{
    for (const SourceFile& file : sourceFiles(rooms, {".cpp", ".h"})) {
        for (const Include& include : includesOf(file))
            check(file, include);
    }
}

// The includes of a file that its room is not built on.
QStringList forbiddenIncludes(const SourceFile& file)
{
    QStringList forbidden;
    for (auto room = AllowedRooms.begin(); room != AllowedRooms.end(); ++room) {
        if (!isBelow(file.path, room.key()))
            continue;
        const QStringList allowed = *room + QStringList{room.key(), "support"};
        for (const Include& include : includesOf(file)) {
            if (!isBelowAny(include.path, allowed))
                forbidden.append(include.path);
        }
    }
    return forbidden;
}

bool isWrittenFromTheRoot(const Include& include)
{
    return include.isPlain && QFileInfo(sourcePath(include.path)).isFile();
}

bool mayTouchFiles(const SourceFile& file)
{
    return isBelow(file.path, "support/file") || isBelow(file.path, "host");
}

// A function of the file's own may have any name.
bool declares(const QString& code, const QString& call)
{
    if (call.contains("::"))
        return false;
    const QString name = QString(call).remove(QRegularExpression("[^\\w]"));
    const QRegularExpression declaration("\\b(?!return|else|throw)\\w+[\\s*&]+" + name + "\\s*\\(");
    return declaration.match(code).hasMatch();
}

void expectNowhere(const QVector<SourceFile>& files, const QRegularExpression& pattern)
{
    for (const SourceFile& file : files) {
        const QString code = bareCode(file.text);
        for (auto it = pattern.globalMatch(code); it.hasNext();) {
            const QRegularExpressionMatch match = it.next();
            const int line = int(code.left(match.capturedStart()).count('\n')) + 1;
            if (!declares(code, match.captured()))
                ADD_FAILURE() << place(file, line) << " has " << match.captured().toStdString();
        }
    }
}

QVector<SourceFile> filesWithoutTheFileSystem()
{
    QVector<SourceFile> files;
    for (const SourceFile& file : phoneCode()) {
        if (!mayTouchFiles(file))
            files.append(file);
    }
    return files;
}

} // namespace

TEST(IncludeRules, EveryIncludeIsWrittenFromTheRoot)
{
    forEachInclude(phoneRooms() + QStringList{"registrar", "tools", "tests", "bench", "fuzz"},
                   [](const SourceFile& file, const Include& include) {
                       EXPECT_TRUE(isWrittenFromTheRoot(include))
                           << place(file, include.line) << " includes " << qPrintable(include.path);
                   });
}

TEST(IncludeRules, TheLibraryIncludesOnlyTheLibrary)
{
    forEachInclude(LibraryRooms, [](const SourceFile& file, const Include& include) {
        EXPECT_TRUE(isBelowAny(include.path, LibraryRooms))
            << place(file, include.line) << " includes " << qPrintable(include.path);
    });
}

TEST(IncludeRules, TheContractIncludesOnlyTheSupportRooms)
{
    forEachInclude({"support/host"}, [](const SourceFile& file, const Include& include) {
        EXPECT_TRUE(isBelow(include.path, "support"))
            << place(file, include.line) << " includes " << qPrintable(include.path);
    });
}

TEST(IncludeRules, TheModuleNeverIncludesTheHost)
{
    forEachInclude(moduleRooms(), [](const SourceFile& file, const Include& include) {
        EXPECT_FALSE(isBelow(include.path, "host"))
            << place(file, include.line) << " includes " << qPrintable(include.path);
    });
}

TEST(IncludeRules, OnlyTheProgramItselfJoinsHostAndModule)
{
    forEachInclude({"host"}, [](const SourceFile& file, const Include& include) {
        if (file.path != "host/main.cpp") {
            EXPECT_FALSE(isBelowAny(include.path, ModuleRooms))
                << place(file, include.line) << " includes " << qPrintable(include.path);
        }
    });
}

TEST(IncludeRules, ARoomIncludesOnlyTheRoomsItIsBuiltOn)
{
    for (const SourceFile& file : phoneCode())
        EXPECT_EQ(forbiddenIncludes(file).join(" ").toStdString(), "") << qPrintable(file.path);
}

// A toolkit that does nothing is larger than the whole agent.
TEST(IncludeRules, TheSipAgentIncludesItsOwnRoomAndNoToolkit)
{
    static const QRegularExpression toolkit("#\\s*include\\s*<Q\\w+");
    // Files are looked at in their own room: this one is built into the agent, and keeps its rule.
    static const QString shared = "support/file/placeLook.h";
    QVector<SourceFile> files = sourceFiles({"sip"}, {".cpp", ".h"});
    EXPECT_GT(files.size(), 2);
    for (const SourceFile& file : sourceFiles({"support/file"}, {".cpp", ".h"})) {
        if (file.baseName() == "placeLook")
            files.append(file);
    }
    expectNowhere(files, toolkit);
    for (const SourceFile& file : files) {
        for (const Include& include : includesOf(file))
            EXPECT_TRUE(isBelow(include.path, "sip") || include.path == shared) << place(file, include.line);
    }
}

// It is no part of the phone, and small enough to be read.
TEST(IncludeRules, TheExchangeIncludesItsOwnRoomAndTheAgentsAndNoToolkit)
{
    static const QRegularExpression toolkit("#\\s*include\\s*<Q\\w+");
    const QVector<SourceFile> files = sourceFiles({"registrar"}, {".cpp", ".h"});
    EXPECT_GT(files.size(), 2);
    expectNowhere(files, toolkit);
    for (const SourceFile& file : files) {
        for (const Include& include : includesOf(file))
            EXPECT_TRUE(isBelowAny(include.path, {"registrar", "sip"})) << place(file, include.line);
    }
}

TEST(IncludeRules, NoSpellingOfAPathGetsRoundThem)
{
    const QStringList spellings = {
        "<host/desktop/restart.h>",     "\"host/services/../desktop/restart.h\"",
        "<host//desktop/restart.h>",    "<host/services/../desktop/restart.h>",
        "\"host//desktop/restart.h\"",  "\"host/./desktop/restart.h\"",
        "\"./host/desktop/restart.h\"",
    };
    for (const char* path : {"frame/noteBox.cpp", "host/services/messages/timer.cpp"}) {
        for (const QString& spelling : spellings) {
            SCOPED_TRACE(qPrintable(spelling));
            const SourceFile file = {path, "\n/* why */ # include " + spelling + "\n"};
            EXPECT_EQ(forbiddenIncludes(file).join(" ").toStdString(), "host/desktop/restart.h");
            const QVector<Include> includes = includesOf(file);
            ASSERT_EQ(includes.size(), 1);
            EXPECT_EQ(includes.first().line, 2);
            EXPECT_FALSE(isWrittenFromTheRoot(includes.first()));
        }
    }
    const SourceFile good = {"frame/noteBox.cpp",
                             "#include \"support/host/box.h\"\n#include <QDialog>\n#include <unistd.h>\n"};
    EXPECT_EQ(forbiddenIncludes(good).join(" ").toStdString(), "");
    ASSERT_EQ(includesOf(good).size(), 1);
    EXPECT_TRUE(isWrittenFromTheRoot(includesOf(good).first()));
}

TEST(IncludeRules, EveryFolderOfThePhoneIsARoomWithRules)
{
    for (const SourceFile& file : phoneCode()) {
        const bool known = AllowedRooms.contains(file.folder()) || isBelow(file.path, "support") ||
                           isBelow(file.path, "players") || file.path == "host/main.cpp";
        EXPECT_TRUE(known) << qPrintable(file.path);
    }
}

TEST(IncludeRules, OnlyTheFileRoomAndTheHostCallTheFileSystem)
{
    static const QRegularExpression plain(
        "(?<![\\w.>:])(?:std::|::)?(?:fopen|freopen|tmpfile|unlink|rename|rmdir|mkdir|opendir|chmod|symlink|"
        "system|popen|fork|vfork|execl|execlp|execle|execv|execvp|execve|posix_spawnp?)\\s*\\(");
    static const QRegularExpression scoped(
        "(?<![\\w>])(?:std)?::(?:open|creat|stat|lstat|remove|access)\\s*\\(");
    expectNowhere(filesWithoutTheFileSystem(), plain);
    expectNowhere(filesWithoutTheFileSystem(), scoped);
}

TEST(IncludeRules, OnlyTheFileRoomAndTheHostUseFileAndProcessClasses)
{
    static const QRegularExpression classes(
        "\\b(?:QFile|QDir|QFileInfo|QSaveFile|QTemporaryFile|QTemporaryDir|QDirIterator|QFileSystemWatcher|"
        "QStandardPaths|QSettings|QProcess|QLockFile|QStorageInfo)\\b|\\bstd::(?:filesystem|[io]?fstream)"
        "\\b");
    static const QRegularExpression headers(
        "#\\s*include\\s*<(?:filesystem|fstream|dirent\\.h|fcntl\\.h|sys/stat\\.h|unistd\\.h|spawn\\.h)>");
    expectNowhere(filesWithoutTheFileSystem(), classes);
    expectNowhere(filesWithoutTheFileSystem(), headers);
}

// The module makes some of the host's dialogs itself, so their classes stand in a contract header.
static bool isInTheContract(const QString& dialog)
{
    for (const SourceFile& header : sourceFiles({"support/host"}, {".h"})) {
        if (header.text.contains("class HX_HOST_API " + dialog + " :"))
            return true;
    }
    return false;
}

TEST(IncludeRules, AFormHasTheClassAndTheFilesOfItsName)
{
    for (const SourceFile& form : sourceFiles(phoneRooms(), {".ui"})) {
        static const QRegularExpression named("<class>(\\w+)</class>");
        EXPECT_EQ(named.match(form.text).captured(1).toStdString(), form.baseName().toStdString());
        const QString name = form.folder() + "/" + form.baseName();
        EXPECT_TRUE(QFileInfo(sourcePath(name + ".cpp")).isFile()) << qPrintable(name);
        EXPECT_TRUE(QFileInfo(sourcePath(name + ".h")).isFile() || isInTheContract(form.baseName()))
            << qPrintable(name);
    }
}

TEST(IncludeRules, ADialogIsDeclaredInTheHeaderOfItsName)
{
    static const QRegularExpression dialog("\\bclass\\s+(?:HX_\\w+\\s+)?((?:dlg|subDlg)\\w+)[^;{(]*\\{");
    for (const SourceFile& file : sourceFiles(moduleRooms(), {".h"})) {
        const QString code = bareCode(file.text);
        for (auto it = dialog.globalMatch(code); it.hasNext();)
            EXPECT_EQ(it.next().captured(1).toStdString(), file.baseName().toStdString())
                << qPrintable(file.path);
    }
}

TEST(IncludeRules, AHeaderIsReadOnceAndIncludesNoClassTwice)
{
    for (const SourceFile& file : phoneCode()) {
        const bool guarded = !file.path.endsWith(".h") || file.text.startsWith("#pragma once\n");
        EXPECT_TRUE(guarded) << qPrintable(file.path);
        QSet<QString> seen;
        for (const Include& include : includesOf(file)) {
            EXPECT_FALSE(seen.contains(include.path)) << place(file, include.line);
            seen.insert(include.path);
        }
    }
}

TEST(IncludeRules, NoFileIsLongerThanSevenHundredLines)
{
    for (const SourceFile& file :
         sourceFiles(phoneRooms() + QStringList{"registrar", "tools", "tests"}, {".cpp", ".h"}))
        EXPECT_LT(file.text.count('\n'), 700) << qPrintable(file.path);
}
