#pragma once
// File search. Any thread.
#include "support/container/chList.h"
#include "support/text/chString.h"
#include "support/text/nuxExport.h"

// Appends the device paths of the files in directory whose name fits the filter: patterns with "*" and
// "?", separated by ";" or blanks, without regard to case; an empty filter takes every file. Flags other
// than 0 search the folders below too. The files of a folder come in the order of their names, before
// those of its folders. A folder that links lead back to is searched once.
// 0 when the directory cannot be read, or is no absolute path: such a one would lead out of the device root.
NUX_API int nuxFindFile(const char* directory, const char* filter, chObjList_dynamic<chString, 16>& list,
                        int flags);
// 1 when the bare name fits the filter.
NUX_API int pathMatchFilter(const char* name, const char* filter);
