#include "tools/signServer/FileAnswer.h"
#include "tools/signServer/ReplyText.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <QLocale>

const char* const XmlType = "text/xml; charset=utf-8";

namespace {

const char* TypeOf(const QByteArray& name)
{
    static const QMap<QByteArray, const char*> types = {
        {"jpg", "image/jpeg"}, {"jpeg", "image/jpeg"}, {"png", "image/png"}, {"gif", "image/gif"},
        {"bmp", "image/bmp"},  {"mp4", "video/mp4"},   {"xml", XmlType},
    };
    return types.value(name.mid(name.lastIndexOf('.') + 1).toLower(), "application/octet-stream");
}

bool IsUnchanged(const WebRequest& request, const QByteArray& tag)
{
    const QByteArray known = request.Field("if-none-match");
    for (const QByteArray& one : known.split(',')) {
        const QByteArray name = one.trimmed();
        // A cache that packs what it keeps calls the tag weak.
        if (name == tag || name == "W/" + tag || name == "*")
            return true;
    }
    return false;
}

QByteArray Quoted(const QByteArray& sum)
{
    return "\"" + sum + "\"";
}

QDateTime ChangedAt(const OpenFile& file)
{
    return QDateTime::fromSecsSinceEpoch(file.Status().st_mtim.tv_sec, Qt::UTC);
}

bool IsOlderThanKnown(const WebRequest& request, const OpenFile& file)
{
    // A tag that is named decides alone.
    if (request.fields.contains("if-none-match"))
        return false;
    const QString text = QString::fromLatin1(request.Field("if-modified-since"));
    const QDateTime known = QLocale::c().toDateTime(text, "ddd, dd MMM yyyy hh:mm:ss 'GMT'");
    return known.isValid() && ChangedAt(file) <= QDateTime(known.date(), known.time(), Qt::UTC);
}

} // namespace

void AnswerXml(WebResponse& response, const QByteArray& xml, int status)
{
    response.status = status;
    response.type = XmlType;
    response.body = xml;
}

void AnswerRefused(WebResponse& response, const QByteArray& reason, int status)
{
    response.refused = reason;
    AnswerXml(response, RefusedReply(reason), status);
}

void AnswerXmlOrUnchanged(const WebRequest& request, WebResponse& response, const QByteArray& xml)
{
    const QByteArray tag = Quoted(QCryptographicHash::hash(xml, QCryptographicHash::Md5).toHex());
    response.fields.append({"ETag", tag});
    if (IsUnchanged(request, tag))
        response.status = 304;
    else
        AnswerXml(response, xml);
}

void AnswerFileOrUnchanged(const WebRequest& request, WebResponse& response, const OpenFilePtr& file,
                           const QByteArray& sum, const QByteArray& name)
{
    const QByteArray tag = Quoted(sum);
    response.fields.append({"ETag", tag});
    response.fields.append({"Last-Modified", HttpTime(ChangedAt(*file))});
    response.sum = sum;
    if (IsUnchanged(request, tag) || IsOlderThanKnown(request, *file)) {
        response.status = 304;
        return;
    }
    response.type = TypeOf(name);
    response.file = file;
}

void BreakXml(WebResponse& response)
{
    const qsizetype lastTag = response.body.lastIndexOf('<');
    if (lastTag >= 0)
        response.body.truncate(lastTag / 2 + 1);
}
