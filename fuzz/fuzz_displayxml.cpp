// The stored list of the signage files, which a disk may have damaged. What could be read of it is written as
// a list that reads as the same again.
#include "fuzz/fuzzRoot.h"
#include "signage/nDeckFileList.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckListFile.h"
#include "support/file/atomicSave.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include <string>

namespace {

// The folder of the signage is there, and what cannot be read is not told.
struct Root : FuzzRoot
{
    Root()
    {
        fileSetReportSink([](const char*) {});
        expect(pathMakeDirectories(NDECK_FOLDER));
    }
};

bool isSame(const _nDeckFileNode& one, const _nDeckFileNode& other)
{
    return one.path == other.path && one.md5 == other.md5 && one.type == other.type &&
           one.size == other.size && one.fromdt == other.fromdt && one.todt == other.todt &&
           one.eventType == other.eventType;
}

// Only what is written of a record of its kind, each name once.
void fillList(const nDeckNodeList& stored, nDeckFileList& list)
{
    for (_nDeckFileNode node : stored) {
        if (node.type == "media")
            node.fromdt = node.todt = node.eventType = "";
        else if (node.type == "layout")
            node.size = "";
        else
            continue;
        list.append(node);
    }
}

void expectReadBack(const nDeckNodeList& list)
{
    const std::string text = nDeckListText(list);
    expect(fileSaveAtomic(NDECK_LIST, text.data(), text.size()));
    nDeckNodeList again;
    expect(nDeckListRead(again));
    expect(again.size() == list.size());
    auto other = again.begin();
    for (const _nDeckFileNode& node : list)
        expect(isSame(node, *other++));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static Root root;
    expect(fileSaveAtomic(NDECK_LIST, reinterpret_cast<const char*>(data), size));
    nDeckNodeList stored;
    expect(nDeckListRead(stored));
    expect(stored.size() <= nDeckFileList::RECORD_LIMIT);
    nDeckFileList list;
    fillList(stored, list);
    expectReadBack(list.nodes());
    return 0;
}
