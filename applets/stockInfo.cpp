#include "applets/stockInfo.h"

namespace {

// What differs most often first.
chString tagCStockInfo::*const kFields[] = {
    &tagCStockInfo::strUpdated,   &tagCStockInfo::strCompany,    &tagCStockInfo::strLast,
    &tagCStockInfo::strChange,    &tagCStockInfo::strPercChange, &tagCStockInfo::strOpen,
    &tagCStockInfo::strPrevClose, &tagCStockInfo::strLow,        &tagCStockInfo::strHigh,
    &tagCStockInfo::strBid,       &tagCStockInfo::strAsk,        &tagCStockInfo::strMarketCap,
    &tagCStockInfo::strVolume,
};

} // namespace

const tagCStockInfo STOCK_DEF_INFO = {
    STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE,
    STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE,
    STOCK_NO_VALUE, STOCK_NO_VALUE, STOCK_NO_VALUE,
};

const char* const S_STOCK_MAP[STOCK_TITLES] = {
    "Company Name",
    "Last Trade",
    "Change",
    "Change in Percent",
    "Open",
    "Previous Close",
    "Day's High",
    "Day's Low",
    "Bid",
    "Ask",
    "Volume",
    "Last Trade Date",
    "Last Trade Time",
    "Market Cap",
};
const char* const S_STOCK_VALUE = "value";
const char* const S_STOCK_TITLE = "title";
const char* const S_STOCK_ROOTMEUN = "Stock";

void CopyStockInfo(tagCStockInfo& to, const tagCStockInfo& from)
{
    for (chString tagCStockInfo::*field : kFields)
        to.*field = from.*field;
}

bool operator==(const tagCStockInfo& left, const tagCStockInfo& right)
{
    for (chString tagCStockInfo::*field : kFields) {
        if (left.*field != right.*field)
            return false;
    }
    return true;
}

bool operator!=(const tagCStockInfo& left, const tagCStockInfo& right)
{
    return !(left == right);
}
