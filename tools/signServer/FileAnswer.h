#pragma once
// Puts bytes into an answer, with the marks that let a cache ask whether they changed.
#include "tools/signServer/SignFolder.h"
#include <httplib.h>

extern const char* const XmlType;

void AnswerXml(httplib::Response& response, const QByteArray& xml, int status = 200);
// With an ETag; 304 without content when the request names it.
void AnswerXmlOrUnchanged(const httplib::Request& request, httplib::Response& response,
                          const QByteArray& xml);
// The same with the file's time as well. sum: its MD5.
void AnswerFileOrUnchanged(const httplib::Request& request, httplib::Response& response,
                           const OpenFilePtr& file, const QByteArray& sum, const QByteArray& name);
// The answer that is already there, as a fault changes it.
void BreakXml(httplib::Response& response);
void SendInChunks(httplib::Response& response);
