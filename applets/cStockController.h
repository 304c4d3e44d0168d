#pragma once
#include "applets/cStockLogic.h"
#include "applets/mvcController.h"

class StockView;

// Takes a view's question to the logic, and the answer to that view. User-interface thread.
class CStockController : public MVCController, public ActionCallback
{
public:
    CStockController();
    ~CStockController() override;

    // The answer comes by the view's own methods.
    void StockRequest(chReferObject view, const chString& code);
    // No answer is awaited any more; one that comes is that of a replaced request.
    void ForgetRequest();
    // view is being destroyed.
    void ForgetView(const StockView* view);
    // info: what the view shows.
    void SetStockInfo(const tagCStockInfo& info);
    const tagCStockInfo& GetStockInfo() const { return stockInfo; }
    const CStockLogic& Logic() const { return m_logic; }

    // action: a CStockAction that is done; anything else is no answer.
    void OnCallback(taskAction* action) override;

private:
    void OnReply(StockView* view, const CStockAction& action);
    void OnQuote(StockView* view, const CStockAction& action, const tagCStockInfo& info);

    CStockLogic m_logic;
    tagCStockInfo stockInfo;
    chString strCode; // asked for last
};

// The only one; built at the first call.
CStockController& GetGlobalCStockController();
