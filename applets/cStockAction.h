#pragma once
#include "support/host/http.h"

// The transfer of one quote, and the view that asked for it.
class CStockAction : public HttpAction
{
public:
    ~CStockAction() override;
    chObject* GetUiObj() const { return pUiObj; }
    // Takes no reference, and gives one up: that of the view it had, and one of the view it has now. So the
    // count of a view says nothing of its life; a view that is destroyed takes itself away (null).
    void SetUiObj(chObject* object);

private:
    chObject* pUiObj = nullptr;
};
