#include "signage/unusedFilesAction.h"
#include "signage/nDeckFolder.h"
#include "support/file/findFile.h"
#include "support/file/path.h"

namespace {

// The last kind is what a transfer writes before its file is whole.
const char* const kUnused = "*" NDECK_FETCHING ";*" NDECK_WAITING ";.*" NDECK_FETCHING ".save*";

} // namespace

int unusedFilesAction::exec()
{
    chObjList_dynamic<chString, 16> files;
    nuxFindFile(NDECK_FOLDER, kUnused, files, 0);
    for (const chString& file : files)
        names.push_back(pathGetFileNamePos(file));
    return 1;
}

std::string unusedFilesAction::nameOf(const std::string& name)
{
    const size_t start = name[0] == '.' ? 1 : 0;
    const size_t end = name.rfind(NDECK_FETCHING);
    return end == name.npos || end < start ? name : name.substr(start, end - start);
}
