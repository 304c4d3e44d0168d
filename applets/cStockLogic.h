#pragma once
#include "applets/mvcBusinessLogic.h"
#include "applets/stockInfo.h"
#include "support/host/task.h"

class CStockAction;
class xmlElement;

// Asks for quotes, and reads what comes. Its one action is used again by each request: a newer one takes the
// place of what is under way. User-interface thread.
class CStockLogic : public MVCBusinessLogic, public ActionCallback
{
public:
    CStockLogic();
    ~CStockLogic() override;

    // False when nothing is asked for: without a code, and where no feed is known.
    bool SendStockRequest(chReferObject view, const chString& code);
    // Where the quote of that code is fetched to.
    static chString LocalFile(const chString& code);
    CStockAction& Action() const;

    // url: as it was where the feed has no address. Nothing is escaped.
    void GetURLFormCode(const char* code, chString& url) const;
    void GetURLFormGoogle(const char* code, chString& url) const;
    void GetURLFormNdeck(const char* code, chString& url) const;

    // Read a reply of the source that is in use, or of that source. True on success; info then has what the
    // reply holds.
    bool XmlPhraseToStockInfo(tagCStockInfo& info, const chString& file) const;
    bool XmlPhraseToStockInfoByGoogle(tagCStockInfo& info, const chString& file) const;
    bool XmlPhraseToStockInfoByNdeck(tagCStockInfo& info, const chString& file) const;
    // Empty without a parent; "N/A" without the child or its attribute.
    static chString GetStockAttribute(xmlElement* parent, const char* name, const char* attribute);
    // Whether anything is known of the stock.
    static bool IsExistStock(const tagCStockInfo& info);

    // Tells the controller.
    void OnCallback(taskAction* action) override;

private:
    chReferObject m_action;
};
