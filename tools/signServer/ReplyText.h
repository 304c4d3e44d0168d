#pragma once
// The XML of the replies: every reply to a phone has the root "norvane" with the child "ndeck".
#include <QByteArray>
#include <functional>

class QDateTime;
class QXmlStreamWriter;

// content writes what stands inside "ndeck".
QByteArray NdeckReply(const std::function<void(QXmlStreamWriter&)>& content);
QByteArray RegisteredReply();
QByteArray RefusedReply(const QByteArray& reason);
// A time in UTC as the fields of an answer tell it.
QByteArray HttpTime(const QDateTime& time);
