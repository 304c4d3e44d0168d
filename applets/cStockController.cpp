#include "applets/cStockController.h"
#include "applets/cStockAction.h"
#include "applets/feed.h"
#include "applets/stockView.h"
#include "support/host/trace.h"

namespace {
const char* const kFolder = "/rundata/data/";
}

CStockController& GetGlobalCStockController()
{
    static CStockController controller;
    return controller;
}

// Here, where the controller is known: the logic is a part of it.
void CStockLogic::OnCallback(taskAction* action)
{
    GetGlobalCStockController().OnCallback(action);
}

CStockController::CStockController() : stockInfo(STOCK_DEF_INFO) {}

CStockController::~CStockController() = default;

void CStockController::StockRequest(chReferObject view, const chString& code)
{
    strCode = code;
    m_logic.SendStockRequest(view, code);
}

void CStockController::ForgetRequest()
{
    strCode = chString();
}

void CStockController::ForgetView(const StockView* view)
{
    if (m_logic.Action().GetUiObj() == view)
        m_logic.Action().SetUiObj(nullptr);
}

void CStockController::SetStockInfo(const tagCStockInfo& info)
{
    CopyStockInfo(stockInfo, info);
}

void CStockController::OnCallback(taskAction* action)
{
    CStockAction* stock = dynamic_cast<CStockAction*>(action);
    StockView* view = stock ? dynamic_cast<StockView*>(stock->GetUiObj()) : nullptr;
    if (!view || view->IsClosed())
        return;
    const chString file = stock->strLocalFile; // the next request changes it, also while a box is open
    nuxTrace(TRACE_NOTE, "CStockController::OnCallback localFile = %s", file.GetText());
    nuxTrace(TRACE_NOTE, "result = %d", stock->nResult);
    if (stock->nResult == 0) {
        feedRemoveAnswer(file, kFolder);
        view->ShowNote(HX_TR("Unable connect to Stock server, please check network."));
    } else if (!feedAnswerIsThere(CStockLogic::LocalFile(strCode), kFolder)) {
        nuxTrace(TRACE_NOTE, "Not new stock!");
        feedRemoveAnswer(file, kFolder);
    } else {
        OnReply(view, *stock);
    }
}

// No file waits for a box to be closed: by then it may be that of the next request.
void CStockController::OnReply(StockView* view, const CStockAction& action)
{
    const chString file = CStockLogic::LocalFile(strCode);
    tagCStockInfo info;
    const bool isGood = m_logic.XmlPhraseToStockInfo(info, file);
    feedRemoveAnswer(file, kFolder);
    feedRemoveAnswer(action.strLocalFile, kFolder);
    if (isGood)
        OnQuote(view, action, info);
    else
        view->ShowNote(HX_TR("data exception."));
}

void CStockController::OnQuote(StockView* view, const CStockAction& action, const tagCStockInfo& info)
{
    const chObject* const object = action.GetUiObj();
    if (!CStockLogic::IsExistStock(info)) {
        view->ShowNote(HX_TR("No site information"));
        SetStockInfo(STOCK_DEF_INFO);
        // The view may have gone while the box was there.
        if (action.GetUiObj() == object)
            view->RefreshView(STOCK_DEF_INFO);
    } else if (info != stockInfo) {
        // The same quote again changes nothing: the page's own timer then tells of a slow network.
        view->RefreshView(info);
        SetStockInfo(info);
    }
}
