#pragma once
// The lists of pages under the arrow keys. User-interface thread.

class QTableWidget;

// One row down (1) or up (-1) and round at the ends, to column 0. A table with fewer than two rows stays.
void tableStepRow(QTableWidget* table, int step);
// For a page whose table steps by itself and leaves the key to the page at its ends: round, from the first
// row up (Qt::Key_Up) or the last one down (Qt::Key_Down). False for every other row and key.
bool tableWrapRow(QTableWidget* table, int key);
