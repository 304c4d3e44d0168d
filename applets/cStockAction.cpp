#include "applets/cStockAction.h"

CStockAction::~CStockAction()
{
    if (pUiObj)
        pUiObj->Release();
}

void CStockAction::SetUiObj(chObject* object)
{
    if (object != pUiObj) {
        if (pUiObj)
            pUiObj->Release();
        pUiObj = object;
    }
    if (pUiObj)
        pUiObj->Release();
}
