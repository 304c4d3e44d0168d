#pragma once
// What a schedule asks the phone to show: its files and its layouts. Texts are UTF-8.
#include "support/container/chList.h"
#include "support/text/chString.h"
#include <string>
#include <unordered_set>
#include <vector>

// One known file of the signage folder.
struct _nDeckFileNode
{
    chString path;   // bare name, ending in ".ing" while it is fetched, in ".new" while it waits for its use
    chString md5;    // as the server told it
    chString size;   // bytes, as text; of media only
    chString type;   // "media" or "layout"
    chString fromdt; // "%Y-%m-%d %H:%M:%S", this and the next two of layouts only
    chString todt;
    chString eventType; // "sametime": the times are those of the phone's own zone
    int nRetries = 0;   // transfers that may still be tried again
};

// One layout of a frame.
struct _nDeckLayoutNode
{
    chString file; // bare name
    chString md5;
    chString fromdt;
    chString todt;
    chString eventType;
    int bMeeting = 0;
};

using nDeckNodeList = chObjList_dynamic<_nDeckFileNode, 16>;
using nDeckLayoutList = chObjList_dynamic<_nDeckLayoutNode, 16>;

_nDeckLayoutNode recordLayout(const _nDeckFileNode& record);
// Bytes that a size text tells: decimal, or hexadecimal with "0x" in front.
long long recordSize(const chString& size);

struct DisplayFrame
{
    nDeckNodeList medias;
    nDeckLayoutList layouts;
    int bFinished = 0; // 1: the schedule it comes from has been handled
};

using nDeckNameSet = std::unordered_set<std::string>;

// Whether taking up frame in the place of other changes what is shown: how many media and layouts there are,
// or the file, MD5 or times of a layout.
bool frameDiffers(const DisplayFrame& frame, const DisplayFrame& other);
nDeckNameSet frameMediaNames(const DisplayFrame& frame);
// Media and layouts.
void frameAddNames(const DisplayFrame& frame, nDeckNameSet& names);
// Name and MD5 of a file as one text; those of all files of a frame.
std::string frameContent(const chString& name, const chString& md5);
void frameAddContents(const DisplayFrame& frame, nDeckNameSet& contents);
// The records that neither frame has a use for: files in use that none names, and files on their way that the
// wanted one does not want with that content.
std::vector<chString> frameStrays(const nDeckNodeList& records, const DisplayFrame& shown,
                                  const DisplayFrame& wanted);
