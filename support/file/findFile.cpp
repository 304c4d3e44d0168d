#include "support/file/findFile.h"

#include "support/file/deviceRoot.h"

#include <algorithm>
#include <dirent.h>
#include <set>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

using FolderId = std::pair<dev_t, ino_t>;

struct FolderContent
{
    std::vector<std::string> files; // names
    std::vector<std::string> folders;
};

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter;
}

// Behind the letter at text, which may be of several bytes.
const char* nextLetter(const char* text)
{
    do
        ++text;
    while ((*text & 0xc0) == 0x80);
    return text;
}

// The pattern runs up to end. A star that took too little gets one more letter until all fits.
bool fitsPattern(const char* name, const char* pattern, const char* end)
{
    const char* star = nullptr;
    const char* retry = nullptr;
    while (*name) {
        if (pattern != end && *pattern == '*') {
            star = ++pattern;
            retry = name;
        } else if (pattern != end && *pattern == '?') {
            ++pattern;
            name = nextLetter(name);
        } else if (pattern != end && lower(*pattern) == lower(*name)) {
            ++pattern;
            ++name;
        } else if (star) {
            pattern = star;
            retry = nextLetter(retry);
            name = retry;
        } else {
            return false;
        }
    }
    while (pattern != end && *pattern == '*')
        ++pattern;
    return pattern == end;
}

bool separates(char letter)
{
    return letter == ';' || letter == ' ' || letter == '\t';
}

std::string joined(const std::string& folder, const std::string& name)
{
    return folder.back() == '/' ? folder + name : folder + "/" + name;
}

// DT_REG, DT_DIR or another DT_ value. A folder mostly tells it itself, and then nobody asks for each of
// thousands of files; what a link leads to is what counts.
int kindOf(const std::string& folder, const dirent& entry)
{
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type;
    struct stat info;
    if (stat(devicePathFollow(joined(folder, entry.d_name).c_str()), &info) != 0)
        return DT_UNKNOWN;
    return S_ISREG(info.st_mode) ? DT_REG : S_ISDIR(info.st_mode) ? DT_DIR : DT_UNKNOWN;
}

bool readFolder(const std::string& folder, FolderContent& content)
{
    DIR* dir = opendir(devicePathFollow(folder.c_str()));
    if (!dir)
        return false;
    while (const dirent* entry = readdir(dir)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..")
            continue;
        const int kind = kindOf(folder, *entry);
        if (kind == DT_REG)
            content.files.push_back(name);
        else if (kind == DT_DIR)
            content.folders.push_back(name);
    }
    closedir(dir);
    std::sort(content.files.begin(), content.files.end());
    std::sort(content.folders.begin(), content.folders.end());
    return true;
}

bool isNewFolder(const std::string& folder, std::set<FolderId>& seen)
{
    struct stat info;
    return stat(devicePathFollow(folder.c_str()), &info) == 0 &&
           seen.insert(FolderId(info.st_dev, info.st_ino)).second;
}

} // namespace

int pathMatchFilter(const char* name, const char* filter)
{
    const char* start = filter ? filter : "";
    bool empty = true;
    while (*start) {
        const char* end = start;
        while (*end && !separates(*end))
            ++end;
        if (end != start) {
            empty = false;
            if (fitsPattern(name ? name : "", start, end))
                return 1;
        }
        start = *end ? end + 1 : end;
    }
    return empty;
}

int nuxFindFile(const char* directory, const char* filter, chObjList_dynamic<chString, 16>& list, int flags)
{
    std::string start = directory ? directory : "";
    while (start.size() > 1 && start.back() == '/')
        start.pop_back();
    std::set<FolderId> seen;
    if (start.empty() || start[0] != '/' || !isNewFolder(start, seen))
        return 0;
    bool readable = false;
    std::vector<std::string> waiting(1, start); // the next one at the end
    while (!waiting.empty()) {
        const std::string folder = waiting.back();
        waiting.pop_back();
        FolderContent content;
        if (readFolder(folder, content) && folder == start)
            readable = true;
        for (const std::string& name : content.files)
            if (pathMatchFilter(name.c_str(), filter))
                list.append(chString(joined(folder, name).c_str()));
        for (auto name = content.folders.rbegin(); flags && name != content.folders.rend(); ++name)
            if (isNewFolder(joined(folder, *name), seen))
                waiting.push_back(joined(folder, *name));
    }
    return readable;
}
