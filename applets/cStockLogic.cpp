#include "applets/cStockLogic.h"
#include "applets/cStockAction.h"
#include "applets/feed.h"
#include "support/file/chAtomicFile.h"
#include "support/file/findFile.h"
#include "support/host/createObject.h"
#include "support/host/trace.h"

namespace {

#define STOCK_SOURCE_XML "/phone/resource/StockSource.xml"

const char* const kSection = "Stock";
const char* const kFolder = "/rundata/data/";
const char* const kLocalFile = "-download.xml"; // behind a code

struct tagStockField
{
    chString tagCStockInfo::*pField;
    const char* szElement; // of the public feed
    const char* szTitle;   // of the signage server; null for what it sends in two rows
};

const tagStockField kFields[] = {
    {&tagCStockInfo::strCompany, "company", "Company Name"},
    {&tagCStockInfo::strLast, "last", "Last Trade"},
    {&tagCStockInfo::strChange, "change", "Change"},
    {&tagCStockInfo::strPercChange, "perc_change", "Change in Percent"},
    {&tagCStockInfo::strOpen, "open", "Open"},
    {&tagCStockInfo::strPrevClose, "y_close", "Previous Close"},
    {&tagCStockInfo::strLow, "low", "Day's Low"},
    {&tagCStockInfo::strHigh, "high", "Day's High"},
    {&tagCStockInfo::strBid, "bid", "Bid"},
    {&tagCStockInfo::strAsk, "ask", "Ask"},
    {&tagCStockInfo::strMarketCap, "market_cap", nullptr},
    {&tagCStockInfo::strVolume, "volume", "Volume"},
    {&tagCStockInfo::strUpdated, "current_date_utc", nullptr},
};

bool isSigned(const chString& text)
{
    return *text.GetText() == '-' || *text.GetText() == '+';
}

// "20261121..." becomes "11/21/2026"; a text that ends before its last digit is as short as that.
chString dateOf(const chString& text)
{
    const chString year(text.GetText(), 4);
    const chString month(text.GetText() + 4, 2);
    return month + "/" + chString(text.GetText() + 6, text.GetLength() > 7 ? 2 : 1) + "/" + year;
}

// The value of the row of that title; null when there is none.
const phraseStringA* rowValue(const xmlElement* rows, const char* title)
{
    xmlElement* row = rows->FindChildElementByAttribute(S_STOCK_TITLE, title);
    return row ? &row->GetAttributeValue(S_STOCK_VALUE) : nullptr;
}

void takeRow(const xmlElement* rows, const char* title, chString& field)
{
    if (const phraseStringA* value = rowValue(rows, title))
        field = value->GetString();
}

void appendRow(const xmlElement* rows, const char* title, chString& field)
{
    if (const phraseStringA* value = rowValue(rows, title))
        field += value->GetString();
}

// What came after its page was closed stayed there when the phone ended.
void removeLeftAnswers()
{
    chObjList_dynamic<chString, 16> left;
    nuxFindFile(kFolder, (chString("*") + kLocalFile).GetText(), left, 0);
    for (const chString& file : left)
        feedRemoveAnswer(file, kFolder);
    chAtomicFile::Sweep(kFolder);
}

void traceError(xmlElement* result)
{
    nuxTrace(TRACE_NOTE, "stock download error");
    chString text;
    if (const xmlElement* error = result->FindChildElement("error")) {
        PeekValue(error, text);
        nuxTrace(TRACE_NOTE, "stock error info(%s)", text.GetText());
    }
}

} // namespace

CStockLogic::CStockLogic()
{
    removeLeftAnswers();
    CStockAction& action = CreateObject<CStockAction>();
    m_action = chReferObject(&action);
    action.DestroyObject();
}

CStockLogic::~CStockLogic()
{
    Action().SetCallback(nullptr);
}

CStockAction& CStockLogic::Action() const
{
    return GetObject<CStockAction>(m_action);
}

chString CStockLogic::LocalFile(const chString& code)
{
    return chString(kFolder) + code + kLocalFile;
}

bool CStockLogic::SendStockRequest(chReferObject view, const chString& code)
{
    const chTraceStack scope("SendStockRequest");
    if (code.IsEmpty())
        return false;
    chString url;
    GetURLFormCode(code, url);
    nuxTrace(TRACE_NOTE, "CStockLogic::SendStockRequest stockURL=%s", url.GetText());
    if (url.IsEmpty())
        return false;
    CStockAction& action = Action();
    // A reply that came after the page was closed, or for a request that was replaced, was left there.
    feedRemoveAnswer(action.strLocalFile, kFolder);
    action.SetUiObj(view.data());
    action.SetCallback(this);
    action.strRemoteUrl = url;
    action.strLocalFile = LocalFile(code);
    nuxTrace(TRACE_NOTE, "CStockLogic::SendStockRequest fullpath = %s", action.strLocalFile.GetText());
    feedPost(action, kFolder, FEED_ANSWER_LIMIT);
    return true;
}

void CStockLogic::GetURLFormCode(const char* code, chString& url) const
{
    const FEED_KIND kind = feedKind(kSection);
    if (kind == FEED_KIND_SIGNAGE)
        GetURLFormNdeck(code, url);
    else if (kind == FEED_KIND_PUBLIC)
        GetURLFormGoogle(code, url);
}

void CStockLogic::GetURLFormGoogle(const char* code, chString& url) const
{
    const chTraceStack scope("GetURLFormGoogle");
    if (feedSourceAddress(STOCK_SOURCE_XML, "StockSource", nullptr, FEED_PUBLIC_TITLE, url) ==
        FEED_SOURCE_NO_FILE) {
        nuxTrace(TRACE_NOTE, "Fail to load xml file [%s]", STOCK_SOURCE_XML);
        return;
    }
    // Also where the file does not have the feed: the request then fails, and the user is told.
    if (code && *code)
        url += code;
}

void CStockLogic::GetURLFormNdeck(const char* code, chString& url) const
{
    nuxTrace(TRACE_NOTE, "CStockLogic::GetURLFormNdeck");
    url = feedServiceAddress("stock", "code", code);
}

bool CStockLogic::XmlPhraseToStockInfo(tagCStockInfo& info, const chString& file) const
{
    const FEED_KIND kind = feedKind(kSection);
    if (kind == FEED_KIND_SIGNAGE)
        return XmlPhraseToStockInfoByNdeck(info, file);
    return kind == FEED_KIND_PUBLIC && XmlPhraseToStockInfoByGoogle(info, file);
}

bool CStockLogic::XmlPhraseToStockInfoByGoogle(tagCStockInfo& info, const chString& file) const
{
    xmlFile reply;
    xmlElement* finance =
        feedLoadAnswer(reply, file) ? xmlFindElementFromRoot(&reply, "xml_api_reply", "finance") : nullptr;
    if (!finance)
        return false;
    for (const tagStockField& field : kFields)
        info.*field.pField = GetStockAttribute(finance, field.szElement, "data");
    chString& percent = info.strPercChange;
    if (!percent.IsEmpty() && percent != STOCK_NO_VALUE) {
        percent += "%";
        // A fall has its sign from the feed.
        if (!isSigned(percent) && *info.strChange.GetText() == '+')
            percent = chString("+") + percent;
    }
    if (info.strUpdated.GetLength() > 6)
        info.strUpdated = dateOf(info.strUpdated);
    return true;
}

bool CStockLogic::XmlPhraseToStockInfoByNdeck(tagCStockInfo& info, const chString& file) const
{
    xmlFile reply;
    xmlElement* ndeck =
        feedLoadAnswer(reply, file) ? xmlFindElementFromRoot(&reply, "norvane", "ndeck") : nullptr;
    if (!ndeck)
        return false;
    if (xmlElement* result = ndeck->FindChildElement("result")) {
        traceError(result);
        return false;
    }
    const xmlElement* rows = ndeck->FindChildElement("RootMenu");
    if (!rows)
        return false;
    for (const tagStockField& field : kFields) {
        if (field.szTitle)
            takeRow(rows, field.szTitle, info.*field.pField);
    }
    takeRow(rows, "Last Trade Date", info.strUpdated);
    info.strUpdated += " ";
    // Twice: phones have always shown the time so.
    appendRow(rows, "Last Trade Time", info.strUpdated);
    appendRow(rows, "Last Trade Time", info.strUpdated);
    appendRow(rows, "Market Cap", info.strMarketCap);
    // The server sends the percent sign.
    if (!isSigned(info.strPercChange) && isSigned(info.strChange))
        info.strPercChange = chString(info.strChange.GetText(), 1) + info.strPercChange;
    return true;
}

chString CStockLogic::GetStockAttribute(xmlElement* parent, const char* name, const char* attribute)
{
    if (!parent)
        return chString();
    xmlElement* child = parent->FindChildElement(name);
    const chString value = child ? child->GetAttributeValue(attribute).GetString() : chString();
    return value.IsEmpty() ? chString(STOCK_NO_VALUE) : value;
}

bool CStockLogic::IsExistStock(const tagCStockInfo& info)
{
    for (const chString& value :
         {info.strOpen, info.strPercChange, info.strPrevClose, info.strLow, info.strHigh}) {
        if (value != STOCK_NO_VALUE)
            return true;
    }
    return false;
}
