#include "support/file/deviceRoot.h"

#include "support/file/sharedFolder.h"

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <limits.h>
#include <linux/openat2.h>
#include <mutex>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

// Two kinds of link lead out of the root, to a folder of this machine: one in "/storage" stands for a
// plugged disk, "/phone" and "/mini-boot" for the image of the device, which many roots share.
bool leadsOut(const std::string& place, const std::string& part)
{
    return place == "/storage" || (place.empty() && (part == "phone" || part == "mini-boot"));
}

// As many links in a row as the kernel follows.
const int LINK_LIMIT = 40;

std::string normalRoot(const char* folder)
{
    std::string root = folder ? folder : "";
    char here[PATH_MAX];
    if (!root.empty() && root[0] != '/' && getcwd(here, sizeof(here)))
        root = std::string(here) + "/" + root;
    while (!root.empty() && root.back() == '/')
        root.pop_back();
    return root;
}

struct DeviceRoot
{
    std::mutex lock;
    std::string folder = normalRoot(getenv("HX_SYSROOT"));
    std::atomic<unsigned> number{1};
};

DeviceRoot& theRoot()
{
    static DeviceRoot root;
    return root;
}

std::string rootFolder()
{
    DeviceRoot& root = theRoot();
    std::lock_guard<std::mutex> guard(root.lock);
    return root.folder;
}

bool climbs(const std::string& path)
{
    const std::string closed = path + "/";
    return closed.find("/../") != std::string::npos;
}

std::vector<std::string> partsOf(const std::string& path)
{
    std::vector<std::string> parts;
    size_t start = 0;
    while (start < path.size()) {
        const size_t end = std::min(path.find('/', start), path.size());
        if (end > start)
            parts.push_back(path.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// One part further; ".." at the top leads nowhere.
void step(std::string& path, const std::string& part)
{
    if (part == "..")
        path.erase(path.empty() ? 0 : path.rfind('/'));
    else if (part != ".")
        path += "/" + part;
}

std::string withoutClimbing(const std::string& path)
{
    std::string result;
    for (const std::string& part : partsOf(path))
        step(result, part);
    return result.empty() ? "/" : result;
}

// The path of parts that stand in reverse; ".." at its top leads nowhere.
std::string pathOf(const std::vector<std::string>& reversed)
{
    std::string path;
    for (size_t i = reversed.size(); i > 0; --i)
        step(path, reversed[i - 1]);
    return path;
}

std::string mapped(const std::string& root, const std::string& path)
{
    if (root.empty() || path.empty() || path[0] != '/')
        return path;
    return root + (climbs(path) ? withoutClimbing(path) : path);
}

// What the link in that folder of the machine names; empty when it is none, or one that must not be
// followed because anybody may have put it there.
std::string linkTarget(const std::string& folder, const std::string& name)
{
    char target[PATH_MAX];
    const ssize_t length = readlink((folder + "/" + name).c_str(), target, sizeof(target));
    if (length <= 0 || fileIsSharedFolder(folder.empty() ? "/" : folder.c_str()))
        return std::string();
    return std::string(target, size_t(length));
}

// The folder is there, and no part of its path is a link: one question to the system in place of one for
// each part. False also where the system knows no such question.
bool isFolderWithoutLinks(const std::string& folder)
{
    open_how how = {};
    how.flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
    how.resolve = RESOLVE_NO_SYMLINKS;
    const int fd = int(syscall(SYS_openat2, AT_FDCWD, folder.c_str(), &how, sizeof how));
    return fd >= 0 && close(fd) == 0;
}

// No part of it leads elsewhere than its name says, unless it is a link.
bool isPlain(const std::string& path)
{
    return !path.empty() && path[0] == '/' && path.back() != '/' && path.find("//") == std::string::npos &&
           path.find("/.") == std::string::npos;
}

// How much of a device path, in whole parts, needs no look.
size_t lengthWithoutLinks(const std::string& root, const std::string& path)
{
    const size_t slash = isPlain(path) ? path.rfind('/') : 0;
    return slash > 0 && isFolderWithoutLinks(root + path.substr(0, slash)) ? slash : 0;
}

std::string followed(const std::string& path)
{
    const std::string root = rootFolder();
    const std::string whole = mapped(root, path);
    if (whole.empty() || whole[0] != '/')
        return whole;
    std::string place = path.substr(0, lengthWithoutLinks(root, path));
    std::vector<std::string> waiting = partsOf(path.substr(place.size()));
    if (waiting.empty())
        return whole;
    std::reverse(waiting.begin(), waiting.end()); // the next one at the end
    int links = 0;
    while (!waiting.empty()) {
        const std::string part = waiting.back();
        waiting.pop_back();
        const std::string target = part == ".." ? "" : linkTarget(root + place, part);
        if (target.empty()) {
            step(place, part);
            continue;
        }
        if (++links > LINK_LIMIT)
            return whole;
        if (leadsOut(place, part) && target[0] == '/' && !root.empty())
            return target + pathOf(waiting);
        if (target[0] == '/')
            place.clear();
        const std::vector<std::string> parts = partsOf(target);
        waiting.insert(waiting.end(), parts.rbegin(), parts.rend());
    }
    return root + (place.empty() ? "/" : place);
}

std::string followedFolder(const std::string& folder)
{
    const std::string whole = rootFolder() + folder;
    return isPlain(folder) && isFolderWithoutLinks(whole) ? whole : followed(folder);
}

} // namespace

void deviceSetRoot(const char* folder)
{
    DeviceRoot& root = theRoot();
    std::lock_guard<std::mutex> guard(root.lock);
    root.folder = normalRoot(folder);
    ++root.number;
}

unsigned deviceGetRootNumber()
{
    return theRoot().number.load(std::memory_order_acquire);
}

chString deviceGetRoot()
{
    return chString(rootFolder().c_str());
}

chString devicePath(const char* path)
{
    return chString(mapped(rootFolder(), path ? path : "").c_str());
}

chString devicePathFollow(const char* path)
{
    return chString(followed(path ? path : "").c_str());
}

chString devicePathFollowFolder(const char* path)
{
    const std::string text = path ? path : "";
    const size_t slash = text.rfind('/');
    const std::string name = slash == std::string::npos ? std::string() : text.substr(slash + 1);
    // Without a name at the end there is no link to leave as it is.
    if (name.empty() || name == "." || name == "..")
        return devicePathFollow(path);
    const std::string folder = slash == 0 ? "/" : text.substr(0, slash);
    const std::string place = followedFolder(folder);
    return chString((place + (place.back() == '/' ? "" : "/") + name).c_str());
}

chString devicePathTarget(const char* path)
{
    std::string file = path ? path : "";
    for (int links = 0; links < LINK_LIMIT; ++links) {
        const std::string machine = devicePathFollowFolder(file.c_str()).GetText();
        const size_t slash = machine.rfind('/');
        const std::string target = slash == std::string::npos
                                       ? std::string()
                                       : linkTarget(machine.substr(0, slash), machine.substr(slash + 1));
        if (target.empty())
            break;
        file = target[0] == '/' ? target : file.substr(0, file.rfind('/') + 1) + target;
    }
    return chString(file.c_str());
}
