#include "signage/nDeckFolder.h"
#include "signage/serverConfig.h"
#include "support/file/path.h"
#include "support/host/trace.h"
#include <cstring>
#include <string>
#include <strings.h>

namespace {

constexpr size_t kShownInTrace = 60; // bytes of a name that was refused

// The name itself, and what is put behind it when a copy is kept.
bool isOrExtends(const char* name, const char* own)
{
    const size_t length = strlen(own);
    return strncasecmp(name, own, length) == 0 && (name[length] == 0 || name[length] == '.');
}

// In any case of letters: some disks do not tell them apart.
bool isOwnName(const char* name)
{
    for (const char* own : {"FileList.xml", "display.xml", "register.tmp"}) {
        if (isOrExtends(name, own))
            return true;
    }
    return name[0] == '.'; // files on their way into place
}

bool endsIn(const char* name, const char* suffix)
{
    const size_t length = strlen(name);
    const size_t cut = strlen(suffix);
    return length >= cut && strcasecmp(name + length - cut, suffix) == 0;
}

bool isGoodName(const char* name)
{
    return pathIsSafeName(name) && strlen(name) <= NDECK_NAME_LIMIT && serverTakesValue(name) &&
           !isOwnName(name) && !endsIn(name, NDECK_FETCHING) && !endsIn(name, NDECK_WAITING);
}

void traceRefused(const char* name)
{
    std::string shown(name, strnlen(name, kShownInTrace));
    for (char& letter : shown) {
        if (static_cast<unsigned char>(letter) < ' ' || letter == 0x7f)
            letter = '?';
    }
    nuxTrace(TRACE_DETAIL, "nDeckFileManager refuses the file name(%s)", shown.c_str());
}

} // namespace

chString nDeckPath(const chString& name)
{
    return NDECK_FOLDER + name;
}

void nDeckMakeFolder()
{
    if (!pathIsDirectory(NDECK_FOLDER))
        pathMakeDirectories(NDECK_FOLDER);
}

bool nDeckIsFileName(const char* name)
{
    if (isGoodName(name))
        return true;
    traceRefused(name);
    return false;
}

chString nDeckPlainName(const chString& name)
{
    return nDeckWithoutSuffix(nDeckWithoutSuffix(name, NDECK_FETCHING), NDECK_WAITING);
}

bool nDeckHasSuffix(const chString& name, const char* suffix)
{
    const int cut = static_cast<int>(strlen(suffix));
    return name.GetLength() > cut && strcmp(name.GetText() + name.GetLength() - cut, suffix) == 0;
}

chString nDeckWithoutSuffix(const chString& name, const char* suffix)
{
    if (!nDeckHasSuffix(name, suffix))
        return name;
    return chString(name, name.GetLength() - static_cast<int>(strlen(suffix)));
}
