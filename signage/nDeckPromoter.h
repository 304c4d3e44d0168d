#pragma once
// Puts verified files into use, in the place of the old ones. User-interface thread.
#include "frame/laterWork.h"
#include "signage/nDeckFileBook.h"

class nDeckPromoter
{
public:
    using MayUseCall = std::function<bool(const _nDeckFileNode& waiting)>;

    // book: outlives this. mayUse: false for a file that is to wait on.
    nDeckPromoter(nDeckFileBook& book, MayUseCall mayUse) : m_book(book), m_mayUse(std::move(mayUse)) {}

    // The layouts of the frame that wait with the content that it names.
    void PutLayoutsIntoUse(const DisplayFrame& frame);
    // Everything that waits, and may be used.
    void PutAllIntoUse();
    // The same for those that wait now, over as many turns of the thread as many files take; few are in use
    // at the return. done: called once, when they are.
    void PutAllIntoUseLater(std::function<void()> done);
    // The picture of a file will be asked for soon.
    static void StockPictureToCache(const chString& path);

private:
    void PutRecordIntoUse(const _nDeckFileNode& record);
    std::vector<_nDeckFileNode> TakeWaiting();

    nDeckFileBook& m_book;
    MayUseCall m_mayUse;
    LaterWork m_later;
};
