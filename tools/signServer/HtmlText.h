#pragma once
// Texts of the network, made fit for a web page. Any thread.
#include <QByteArray>

// Shows as it stands between tags and inside a quoted attribute, and can be nothing else there. What would
// not show, or would turn the text around it, becomes a mark.
QByteArray HtmlText(const QByteArray& text);
// A value of a query, for a link.
QByteArray HtmlQueryValue(const QByteArray& value);
