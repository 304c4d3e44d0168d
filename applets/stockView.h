#pragma once
// What the controller of the stocks needs of the view that asked. User-interface thread.
#include "support/host/mvcView.h"

struct tagCStockInfo;

class StockView : public MVCView
{
public:
    using MVCView::MVCView;

    // A closed view wants no answer any more.
    virtual bool IsClosed() const = 0;
    virtual void RefreshView(const tagCStockInfo& info) = 0;
    // A box over the view that closes by itself; returns when it is closed. text: English key.
    virtual void ShowNote(const char* text) = 0;
};
