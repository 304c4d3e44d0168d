#include "signage/nDeckPromoter.h"
#include "signage/nDeckFolder.h"
#include "signage/nDeckPicture.h"
#include "signage/nDeckScreen.h"
#include "signage/pictureNames.h"
#include "support/host/trace.h"
#include <algorithm>

void nDeckPromoter::PutLayoutsIntoUse(const DisplayFrame& frame)
{
    std::vector<chString> waiting;
    for (const _nDeckLayoutNode& layout : frame.layouts) {
        const chString path = layout.file + NDECK_WAITING;
        if (m_book.IsKnown(path, layout.md5))
            waiting.push_back(path);
    }
    if (!waiting.empty())
        m_book.StoreBeforeUse();
    for (const chString& path : waiting)
        m_book.PutIntoUse(path);
}

void nDeckPromoter::PutAllIntoUse()
{
    for (const _nDeckFileNode& record : TakeWaiting())
        PutRecordIntoUse(record);
}

void nDeckPromoter::PutAllIntoUseLater(std::function<void()> done)
{
    for (const _nDeckFileNode& record : TakeWaiting()) {
        m_later.Add([this, record] {
            if (m_book.IsKnown(record.path, record.md5)) // still the content that the stored list speaks of
                PutRecordIntoUse(record);
        });
    }
    m_later.Add(std::move(done));
}

std::vector<_nDeckFileNode> nDeckPromoter::TakeWaiting()
{
    std::vector<_nDeckFileNode> waiting = m_book.WaitingFiles();
    const auto isToWait = [this](const _nDeckFileNode& record) { return !m_mayUse(record); };
    waiting.erase(std::remove_if(waiting.begin(), waiting.end(), isToWait), waiting.end());
    if (!waiting.empty())
        m_book.StoreBeforeUse();
    return waiting;
}

void nDeckPromoter::PutRecordIntoUse(const _nDeckFileNode& record)
{
    if (!m_book.PutIntoUse(record.path) || record.type != "media")
        return;
    const chString path = nDeckPath(nDeckWithoutSuffix(record.path, NDECK_WAITING));
    nuxTrace(TRACE_DETAIL, "ndeck download picture StockPictureToCache(%s)", path.GetText());
    StockPictureToCache(path);
}

// Not on this thread: reading many takes long.
void nDeckPromoter::StockPictureToCache(const chString& path)
{
    if (hasExtension(path, {".PNG", ".JPEG", ".JPG", ".BMP", ".JIF"}))
        picturePrepare(nDeckPictureWish(path, QSize(NDECK_WIDTH, NDECK_HEIGHT)));
}
