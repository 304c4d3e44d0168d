#pragma once
// A quote in the format of the signage server and in that of the public feed.
#include "tools/signServer/Quote.h"
#include <QByteArray>
#include <optional>

// Without a quote every value is "N/A".
QByteArray StockForPhone(const std::optional<Quote>& quote);
// Without a quote nothing is told.
QByteArray StockForPublic(const std::optional<Quote>& quote);
