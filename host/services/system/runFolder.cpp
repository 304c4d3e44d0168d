#include "host/services/system/runFolder.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"
#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace {

constexpr const char* kFolder = "/rundata/run";
constexpr const char* kVariable = "HX_RUN_FOLDER";
std::string g_made; // by replace()

const char* replacement()
{
    const char* folder = getenv(kVariable);
    return folder && *folder == '/' ? folder : nullptr;
}

} // namespace

std::string runFolder::path()
{
    const char* other = replacement();
    return other ? other : devicePathFollow(kFolder).GetText();
}

bool runFolder::make()
{
    return replacement() || pathMakePrivateDirectory(kFolder);
}

bool runFolder::isWritable()
{
    return access(path().c_str(), W_OK | X_OK) == 0;
}

bool runFolder::replace()
{
    const char* place = getenv("TMPDIR");
    std::string name = std::string(place && *place == '/' ? place : "/tmp") + "/hxPhone-XXXXXX";
    if (!mkdtemp(&name[0]) || setenv(kVariable, name.c_str(), 1) != 0)
        return false;
    g_made = name;
    return true;
}

void runFolder::removeReplacement()
{
    if (g_made.empty())
        return;
    unsetenv(kVariable);
    std::error_code ignored;
    std::filesystem::remove_all(g_made, ignored);
    g_made.clear();
}
