#include "tools/signServer/ReplyText.h"
#include <QDateTime>
#include <QLocale>
#include <QXmlStreamWriter>

QByteArray NdeckReply(const std::function<void(QXmlStreamWriter&)>& content)
{
    QByteArray reply;
    QXmlStreamWriter xml(&reply);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartDocument();
    xml.writeStartElement("norvane");
    xml.writeStartElement("ndeck");
    content(xml);
    xml.writeEndDocument();
    return reply;
}

QByteArray RegisteredReply()
{
    return NdeckReply([](QXmlStreamWriter& xml) {
        xml.writeStartElement("result");
        xml.writeTextElement("success", "registered");
        xml.writeEndElement();
    });
}

QByteArray RefusedReply(const QByteArray& reason)
{
    return NdeckReply([&](QXmlStreamWriter& xml) {
        xml.writeStartElement("result");
        xml.writeTextElement("error", QString::fromUtf8(reason));
        xml.writeEndElement();
    });
}

QByteArray HttpTime(const QDateTime& time)
{
    return QLocale::c().toString(time, "ddd, dd MMM yyyy hh:mm:ss 'GMT'").toLatin1();
}
