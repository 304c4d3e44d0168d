#include "tools/signServer/RequestHead.h"
#include <algorithm>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <limits>

namespace http = boost::beast::http;

namespace {

using HeadParser = http::request_parser<http::string_body>;

QByteArray Bytes(boost::beast::string_view text)
{
    return QByteArray(text.data(), qsizetype(text.size()));
}

bool HasStrayCarriageReturn(const QByteArray& head)
{
    for (qsizetype at = head.indexOf('\r'); at >= 0; at = head.indexOf('\r', at + 1)) {
        if (at + 1 == head.size() || head[at + 1] != '\n')
            return true;
    }
    return false;
}

bool IsFolded(const QByteArray& head)
{
    return head.contains("\r\n ") || head.contains("\r\n\t");
}

// The library takes a request line without blanks only.
QByteArray Tidy(const QByteArray& head)
{
    const qsizetype lineEnd = head.indexOf("\r\n");
    return TidyRequestLine(head.left(lineEnd)) + head.mid(lineEnd);
}

void TakeFields(const HeadParser& parser, WebRequest& request)
{
    for (const auto& field : parser.get().base()) {
        QByteArray& value = request.fields[Bytes(field.name_string()).toLower()];
        value += (value.isEmpty() ? "" : ", ") + Bytes(field.value());
    }
}

QByteArray ReadLength(const HeadParser& parser, WebRequest& request)
{
    const auto& head = parser.get().base();
    if (head.count(http::field::transfer_encoding) > 0)
        return "a request in chunks";
    const auto count = head.count(http::field::content_length);
    if (count == 0)
        return QByteArray();
    const QByteArray text = Bytes(head[http::field::content_length]);
    const bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    bool good = false;
    request.length = text.toLongLong(&good);
    if (count > 1 || !digits || !good)
        return "a length that is none";
    if (request.length > 0 && (request.method == "GET" || request.method == "HEAD"))
        return "a body where none belongs";
    return QByteArray();
}

QByteArray CheckHost(const HeadParser& parser)
{
    const auto count = parser.get().base().count(http::field::host);
    return count == 1 || (count == 0 && parser.get().version() == 10) ? "" : "not one Host";
}

} // namespace

qsizetype FindHeadEnd(const QByteArray& come, qsizetype& scanned)
{
    for (;;) {
        const qsizetype at = come.indexOf('\n', scanned);
        if (at < 0)
            break;
        if (at == 0 || come[at - 1] != '\r')
            return -1;
        scanned = at + 1;
        if (at == 1 || (at >= 3 && come[at - 2] == '\n'))
            return scanned;
    }
    scanned = come.size();
    return 0;
}

QByteArray ReadHead(const QByteArray& head, WebRequest& request)
{
    if (HasStrayCarriageReturn(head) || head.contains('\0'))
        return "a control character";
    if (IsFolded(head))
        return "a folded line";
    const QByteArray tidy = Tidy(head);
    HeadParser parser;
    // Escapes make the line longer; what came was measured.
    parser.header_limit(std::uint32_t(tidy.size() + 1));
    parser.body_limit(std::numeric_limits<std::uint64_t>::max());
    boost::system::error_code error;
    parser.put(boost::asio::buffer(tidy.constData(), size_t(tidy.size())), error);
    if (error || !parser.is_header_done())
        return "no HTTP: " + QByteArray::fromStdString(error.message());
    request.method = Bytes(parser.get().method_string());
    request.target = Bytes(parser.get().target());
    request.asked = RequestText(request.target);
    request.keeps = parser.keep_alive();
    TakeFields(parser, request);
    const QByteArray wrong = CheckHost(parser);
    return wrong.isEmpty() ? ReadLength(parser, request) : wrong;
}
