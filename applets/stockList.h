#pragma once
// The user's stocks in "/rundata/data/stockData.xml": a fixed run of slots, an empty one is free. Others
// write the file too, so it is read anew for each call. User-interface thread.
#include <QStringList>

enum {
    STOCK_COUNT_LIMIT = 10 // the count of a list that is full, and of one that cannot be read
};

enum STOCK_LIST_SAVED {
    STOCK_LIST_DONE,
    STOCK_LIST_FULL,  // what had a slot is stored
    STOCK_LIST_FAILED // nothing is stored
};

// The codes of the used slots, in the order of the file. 0 when the file cannot be read, which is traced.
int stockListRead(QStringList& codes);
int stockListCount();
// Puts the codes into the slots in their order and empties the others. What else the file holds stays.
STOCK_LIST_SAVED stockListSave(const QStringList& codes);
