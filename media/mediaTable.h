#pragma once
// The files of one type of the media table "/phone/resource/mediafile.xml". Any thread.
#include "support/text/chString.h"
#include <vector>

// What is beyond is left out of a list.
enum { MEDIA_FOLDER_LIMIT = 64, MEDIA_FILE_LIMIT = 65536 };

struct tagMediaFile
{
    chString strName;       // as a person sees it: the short name of the folder, then that of the file
    chString strPath;       // device path
    int nShortName = 0;     // bytes of the folder's part of strName
    bool bReadOnly = false; // belongs to the firmware
};

// Appends the files of the type: folder by folder in the order of the table, each in the order of the names.
// False when the table has no such type; a folder that cannot be read is an empty one.
bool mediaFilesRead(const char* type, std::vector<tagMediaFile>& files);
