#include "tools/signServer/FileAnswer.h"
#include <QCryptographicHash>
#include <QDateTime>
#include <QLocale>
#include <QMap>
#include <algorithm>

const char* const XmlType = "text/xml; charset=utf-8";

namespace {

constexpr size_t kBlock = 128 << 10;

const char* TypeOf(const QByteArray& name)
{
    static const QMap<QByteArray, const char*> types = {
        {"jpg", "image/jpeg"}, {"jpeg", "image/jpeg"}, {"png", "image/png"}, {"gif", "image/gif"},
        {"bmp", "image/bmp"},  {"mp4", "video/mp4"},   {"xml", XmlType},
    };
    return types.value(name.mid(name.lastIndexOf('.') + 1).toLower(), "application/octet-stream");
}

bool IsUnchanged(const httplib::Request& request, const QByteArray& tag)
{
    const QByteArray known = QByteArray::fromStdString(request.get_header_value("If-None-Match"));
    for (const QByteArray& one : known.split(',')) {
        if (one.trimmed() == tag || one.trimmed() == "*")
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

bool IsOlderThanKnown(const httplib::Request& request, const OpenFile& file)
{
    // A tag that is named decides alone.
    if (request.has_header("If-None-Match") || !request.has_header("If-Modified-Since"))
        return false;
    const QString text = QString::fromStdString(request.get_header_value("If-Modified-Since"));
    const QDateTime known = QLocale::c().toDateTime(text, "ddd, dd MMM yyyy hh:mm:ss 'GMT'");
    return known.isValid() && ChangedAt(file) <= QDateTime(known.date(), known.time(), Qt::UTC);
}

} // namespace

void AnswerXml(httplib::Response& response, const QByteArray& xml, int status)
{
    response.status = status;
    response.set_content(xml.toStdString(), XmlType);
}

void AnswerXmlOrUnchanged(const httplib::Request& request, httplib::Response& response, const QByteArray& xml)
{
    const QByteArray tag = Quoted(QCryptographicHash::hash(xml, QCryptographicHash::Md5).toHex());
    response.set_header("ETag", tag.toStdString());
    if (IsUnchanged(request, tag))
        response.status = 304;
    else
        AnswerXml(response, xml);
}

void AnswerFileOrUnchanged(const httplib::Request& request, httplib::Response& response,
                           const OpenFilePtr& file, const QByteArray& sum, const QByteArray& name)
{
    const QByteArray tag = Quoted(sum);
    response.set_header("ETag", tag.toStdString());
    response.set_header(
        "Last-Modified",
        QLocale::c().toString(ChangedAt(*file), "ddd, dd MMM yyyy hh:mm:ss 'GMT'").toStdString());
    if (IsUnchanged(request, tag) || IsOlderThanKnown(request, *file)) {
        response.status = 304;
        return;
    }
    response.status = 200;
    if (file->Size() == 0) {
        response.set_content(std::string(), TypeOf(name));
        return;
    }
    response.set_content_provider(
        size_t(file->Size()), TypeOf(name), [file](size_t offset, size_t length, httplib::DataSink& sink) {
            const QByteArray bytes = file->Read(qint64(offset), qint64(std::min(length, kBlock)));
            return !bytes.isEmpty() && sink.write(bytes.constData(), size_t(bytes.size()));
        });
}

void BreakXml(httplib::Response& response)
{
    const size_t lastTag = response.body.rfind('<');
    if (lastTag != std::string::npos)
        response.body.resize(lastTag / 2 + 1);
}

void SendInChunks(httplib::Response& response)
{
    const std::string type = response.get_header_value("Content-Type");
    const httplib::ContentProvider source = response.content_provider_;
    const size_t size = source ? response.content_length_ : response.body.size();
    const std::string body = response.body;
    response.headers.erase("Content-Type");
    response.body.clear();
    response.content_length_ = 0;
    response.set_chunked_content_provider(type, [=](size_t offset, httplib::DataSink& sink) {
        if (offset >= size) {
            sink.done();
            return true;
        }
        if (source)
            return source(offset, size - offset, sink);
        return sink.write(body.data() + offset, std::min(size - offset, kBlock));
    });
}
