// A disk that somebody filled who wishes the phone no good, in the browser of the import pages. Each line of
// the input makes an entry: its first letter tells the kind, the rest the name. Whatever there is, the rows
// are plain files and folders of the disk, under the names that they have.
#include "fuzz/fuzzRoot.h"
#include "support/file/deviceRoot.h"
#include "support/host/mediaview.h"
#include <QApplication>
#include <cstdint>
#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>

namespace {

const char* const kDisk = "/storage/uDisk1";
constexpr int kMostEntries = 64;

// A name that is taken stays what it is.
void makeLink(const char* target, const std::string& path)
{
    if (symlink(target, path.c_str()) != 0)
        return;
}

void makeEntry(const std::string& folder, const std::string& line)
{
    const std::string path = folder + '/' + line.substr(1);
    switch (line[0]) {
    case 'd':
        mkdir(path.c_str(), 0755);
        break;
    case 'p':
        mkfifo(path.c_str(), 0644);
        break;
    case 'l':
        makeLink("..", path);
        break;
    case 'o':
        makeLink("/dev/zero", path);
        break;
    default:
        close(open(path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW, 0644));
    }
}

void waitForRows(const qMediaImportView& view)
{
    while (view.isReading())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void checkRows(const qMediaImportView& view)
{
    const std::string folder = view.GetCurPath().GetText();
    for (int row = 1; row < view.count(); ++row) {
        const std::string path = view.itemFullPath(row).GetText();
        expect(path.compare(0, folder.size() + 1, folder + '/') == 0);
        expect(path.find('/', folder.size() + 1) == std::string::npos);
        struct stat info;
        expect(lstat(devicePath(path.c_str()), &info) == 0);
        expect(view.itemIsDirectory(row) ? S_ISDIR(info.st_mode) : S_ISREG(info.st_mode));
        expect(!view.item(row)->text().contains('\n'));
    }
}

void enterFolders(qMediaImportView& view)
{
    for (int row = 0; row < view.count() && view.itemIsDirectory(row); ++row) {
        view.itemClicked(view.item(row));
        waitForRows(view);
        checkRows(view);
        expect(view.EnterDirectory(kDisk) == 1);
        waitForRows(view);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool isOffscreen = qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz_browser";
    static char* argv[] = {name, nullptr};
    static QApplication application(argc, argv);
    expect(isOffscreen);
    const FuzzRoot root;
    const std::string folder = devicePath(kDisk).GetText();
    std::filesystem::create_directories(folder);
    std::istringstream lines(std::string(reinterpret_cast<const char*>(data), size));
    std::string line;
    for (int i = 0; i < kMostEntries && std::getline(lines, line); ++i) {
        // Within the disk; what lies outside of it is not the disk's to fill.
        if (line.size() > 1 && line.find("..") == std::string::npos)
            makeEntry(folder, line);
    }
    qMediaImportView view;
    expect(view.EnterDirectory(kDisk) == 1);
    waitForRows(view);
    checkRows(view);
    enterFolders(view);
    return 0;
}
