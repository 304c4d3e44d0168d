#pragma once
// The report for people: one page of HTML that loads nothing and runs nothing, from a hand's width to a wall.
#include "tools/signServer/StatusReport.h"

// display: the key of the display whose files are listed one by one; empty for the overview.
QByteArray StatusPage(const StatusReport& report, const QByteArray& display);
// What a browser may do with the page: show it, in its own style. The value of Content-Security-Policy.
QByteArray StatusPagePolicy();
