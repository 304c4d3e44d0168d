#pragma once
// From a page's name to what opens it. User-interface thread.
#include "support/host/leftbar.h"
#include "support/text/chString.h"

class QWidget;

enum PAGE_MATCH { MATCH_WHOLE, MATCH_PREFIX, MATCH_ANY };
enum PAGE_OVERLOADS { BOTH_OVERLOADS, PLAIN_OVERLOAD };
enum PAGE_INFO { DROPS_INFO, PASSES_INFO };

// One request: pInfo is null when the caller has no left-bar information.
struct tagPageCall
{
    const chString& strName;
    const tagLeftBarInfo* pInfo;
    QWidget* pParent;
};

struct tagPageRow
{
    const char* szName;
    PAGE_MATCH eMatch;
    PAGE_OVERLOADS eOverloads;
    PAGE_INFO eInfo;
    // 0 when the page belongs to a room that is not there: the name is then an unknown one.
    int (*open)(const tagPageRow& row, const tagPageCall& call);
    const char* szPageClass; // what open() opens; null where it needs none
};

enum { PAGE_ROW_COUNT = 40 };

// The rows in the order in which they are tried; the first that matches acts. The last one takes all.
const tagPageRow* pageTable();
// Acts on the first row that matches.
void pageOpenByName(const tagPageCall& call);
// Tells the user that there is no such page.
void pageNoteUnknown(QWidget* parent);

// True for the version numbers of one customer, for whom an unknown page is a feature still to come.
int CheckKovarVersion();
