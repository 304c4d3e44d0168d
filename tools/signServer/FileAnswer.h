#pragma once
// Puts bytes into an answer, with the marks that let a cache ask whether they changed.
#include "tools/signServer/WebExchange.h"

extern const char* const XmlType;

void AnswerXml(WebResponse& response, const QByteArray& xml, int status = 200);
// The error reply with that reason, which the response keeps.
void AnswerRefused(WebResponse& response, const QByteArray& reason, int status = 200);
// With an ETag; 304 without content when the request names it.
void AnswerXmlOrUnchanged(const WebRequest& request, WebResponse& response, const QByteArray& xml);
// The same with the file's time as well. sum: its MD5.
void AnswerFileOrUnchanged(const WebRequest& request, WebResponse& response, const OpenFilePtr& file,
                           const QByteArray& sum, const QByteArray& name);
// The answer that is already there, as a fault changes it.
void BreakXml(WebResponse& response);
