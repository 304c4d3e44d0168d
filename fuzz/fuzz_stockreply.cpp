// Quotes of both sources, whatever they hold: the texts come from the reply, and the changes that are made to
// them stay within it.
#include "applets/cStockLogic.h"
#include "applets/feed.h"
#include "fuzz/fuzzRoot.h"
#include "support/file/atomicSave.h"
#include "support/file/path.h"

namespace {

const char* const kFile = "/rundata/data/X-download.xml";

void check(const tagCStockInfo& info)
{
    expect(info == info);
    expect(!(info != info));
    tagCStockInfo copy;
    CopyStockInfo(copy, info);
    expect(copy == info);
    if (!CStockLogic::IsExistStock(info))
        expect(info.strOpen == STOCK_NO_VALUE && info.strHigh == STOCK_NO_VALUE);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    static const CStockLogic logic;
    static const bool hasFolder = pathMakeDirectories("/rundata/data");
    expect(hasFolder);
    expect(fileSaveAtomic(kFile, reinterpret_cast<const char*>(data), size));
    tagCStockInfo info;
    if (logic.XmlPhraseToStockInfoByGoogle(info, kFile)) {
        expect(size <= size_t(FEED_ANSWER_LIMIT));
        check(info);
    }
    info = {};
    if (logic.XmlPhraseToStockInfoByNdeck(info, kFile)) {
        expect(size <= size_t(FEED_ANSWER_LIMIT));
        // A blank stands between date and time, also where both are missing.
        expect(!info.strUpdated.IsEmpty());
        check(info);
    }
    return 0;
}
