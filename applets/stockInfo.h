#pragma once
// One stock's quote, as texts that are shown as they came, and the names that feeds and files have for its
// parts.
#include "support/host/api.h"
#include "support/text/chString.h"

struct tagCStockInfo
{
    chString strCompany;
    chString strLast; // last trade
    chString strChange;
    chString strPercChange;
    chString strOpen;
    chString strPrevClose;
    chString strLow;
    chString strHigh;
    chString strBid;
    chString strAsk;
    chString strMarketCap;
    chString strVolume;
    chString strUpdated; // time of the last trade
};

void CopyStockInfo(tagCStockInfo& to, const tagCStockInfo& from);
bool operator==(const tagCStockInfo& left, const tagCStockInfo& right);
bool operator!=(const tagCStockInfo& left, const tagCStockInfo& right);

// What stands where a value is not known, and the quote of a stock of which nothing is known.
#define STOCK_NO_VALUE "N/A"
extern const tagCStockInfo STOCK_DEF_INFO;

// Titles of the rows that the signage server sends; the attributes of a row; the root of the user's list.
enum { STOCK_TITLES = 14 };
extern HX_MODULE_API const char* const S_STOCK_MAP[STOCK_TITLES];
extern HX_MODULE_API const char* const S_STOCK_VALUE;
extern HX_MODULE_API const char* const S_STOCK_TITLE;
extern HX_MODULE_API const char* const S_STOCK_ROOTMEUN;
