#include "tests/sip/noteTexts.h"

namespace {

constexpr const char* kXml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n";

} // namespace

QByteArray dialog(const QByteArray& id, const QByteArray& state, const QByteArray& direction,
                  const QByteArray& attributes, const QByteArray& content)
{
    const QByteArray way = direction.isEmpty() ? QByteArray() : " direction=\"" + direction + "\"";
    return "<dialog id=\"" + id + "\"" + way + " " + attributes + "><state>" + state + "</state>" + content +
           "</dialog>\r\n";
}

QByteArray dialogs(uint32_t version, const QByteArray& state, const QByteArray& all)
{
    return kXml + QByteArray("<dialog-info xmlns=\"urn:ietf:params:xml:ns:dialog-info\" version=\"") +
           QByteArray::number(version) + "\" state=\"" + state +
           "\" entity=\"sip:8001@h\">\r\n<note>\xc3\xa4</note>" + all + "</dialog-info>\r\n";
}

QByteArray member(const QByteArray& uri, const QByteArray& name, const QByteArray& instance,
                  const QByteArray& part)
{
    QByteArray text = "<resource uri=\"" + uri + "\">";
    if (!name.isEmpty())
        text += "<name>" + name + "</name>";
    if (!instance.isEmpty())
        text += "<instance id=\"" + instance + "\" state=\"active\"" +
                (part.isEmpty() ? QByteArray() : " cid=\"" + part + "\"") + "/>";
    return text + "</resource>\r\n";
}

QByteArray list(uint32_t version, bool isWhole, const QByteArray& members)
{
    return "--b\r\nContent-Transfer-Encoding: binary\r\nContent-ID: <root>\r\n"
           "Content-Type: application/rlmi+xml;charset=\"UTF-8\"\r\n\r\n" +
           (kXml + QByteArray("<list xmlns=\"urn:ietf:params:xml:ns:rlmi\" uri=\"sip:all@h\" version=\"")) +
           QByteArray::number(version) + "\" fullState=\"" + (isWhole ? "true" : "false") + "\">\r\n" +
           members + "</list>\r\n";
}

QByteArray part(const QByteArray& id, const QByteArray& document)
{
    return "--b\r\nContent-ID: <" + id + ">\r\nContent-Type: application/dialog-info+xml\r\n\r\n" + document +
           "\r\n";
}
