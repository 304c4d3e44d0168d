// The user's list of stocks, and the file that names the feed. Whatever the list holds, a save of what was
// read leaves the same codes in it.
#include "applets/feed.h"
#include "applets/stockList.h"
#include "frame/configFiles.h"
#include "fuzz/fuzzRoot.h"
#include "support/file/atomicSave.h"
#include "support/file/path.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    static const bool hasFolder = pathMakeDirectories("/rundata/data");
    expect(hasFolder);
    expect(fileSaveAtomic(STOCK_DATA_XML, reinterpret_cast<const char*>(data), size));
    chString address;
    const FEED_SOURCE source =
        feedSourceAddress(STOCK_DATA_XML, "StockSource", nullptr, FEED_PUBLIC_TITLE, address);
    expect(source == FEED_SOURCE_FOUND || address.IsEmpty());
    QStringList codes;
    if (!stockListRead(codes)) {
        expect(stockListCount() == STOCK_COUNT_LIMIT);
        return 0;
    }
    expect(size <= STOCK_DATA_LIMIT);
    expect(stockListCount() == codes.size());
    const STOCK_LIST_SAVED saved = stockListSave(codes);
    QStringList again;
    if (saved == STOCK_LIST_DONE && stockListRead(again))
        expect(again == codes);
    expect(saved != STOCK_LIST_FULL);
    return 0;
}
