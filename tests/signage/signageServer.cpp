#include "tests/signage/signageServer.h"
#include <QCryptographicHash>
#include <utility>

signageServer::signageServer()
{
    http.onRequest = [this](QTcpSocket& socket, const QByteArray& path) { onRequest(socket, path); };
}

QByteArray signageServer::md5(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Md5).toHex();
}

QByteArray signageServer::scheduleText() const
{
    QByteArray scheduled, files;
    for (const tagLayout& layout : layouts) {
        scheduled += "<layout file=\"" + layout.file + "\" fromdt=\"" + layout.from + "\" todt=\"" +
                     layout.to + "\" eventType=\"" + layout.eventType + "\" applet=\"" + layout.applet +
                     "\"/>";
        files += "<file type=\"layout\" path=\"" + layout.file + "\" md5=\"" + md5(layout.content) + "\"/>";
    }
    for (const tagMedia& media : medias) {
        const QByteArray size = media.size.isEmpty() ? QByteArray::number(media.content.size()) : media.size;
        files += "<file type=\"media\" path=\"" + media.path + "\" md5=\"" + md5(media.content) +
                 "\" size=\"" + size + "\"/>";
    }
    return "<norvane><ndeck><result><success/></result><schedule>" + scheduled + "</schedule><files>" +
           files + "</files></ndeck></norvane>";
}

int signageServer::requests(const QByteArray& what) const
{
    return int(order.count(what));
}

QByteArray signageServer::lastPath(const QByteArray& what) const
{
    const qsizetype last = order.lastIndexOf(what);
    return last < 0 ? QByteArray() : m_paths[last];
}

void signageServer::onRequest(QTcpSocket& socket, const QByteArray& path)
{
    QByteArray what = path.mid(path.indexOf("&filePath=") + 10);
    if (path.startsWith("/service/getschedule.htm"))
        what = "schedule";
    else if (path.startsWith("/service/register.htm"))
        what = "register";
    order.append(what);
    m_paths.append(path);
    if (silent.contains(what))
        m_held.append({&socket, what});
    else
        answer(socket, what);
}

void signageServer::release()
{
    silent.clear();
    const auto held = std::move(m_held);
    m_held.clear();
    for (const auto& [socket, what] : held) {
        if (socket)
            answer(*socket, what);
    }
}

void signageServer::drop()
{
    silent.clear();
    for (const auto& [socket, what] : std::exchange(m_held, {})) {
        if (socket)
            socket->abort();
    }
}

void signageServer::answer(QTcpSocket& socket, const QByteArray& what)
{
    if (what == "schedule")
        socket.write(httpServer::answer(schedule.isNull() ? scheduleText() : schedule, scheduleStatus));
    else if (what == "register")
        socket.write(httpServer::answer(registration));
    else if (failing.contains(what))
        socket.write(httpServer::answer("no", "500 Broken"));
    else
        socket.write(httpServer::answer(contentOf(what)));
}

QByteArray signageServer::contentOf(const QByteArray& file) const
{
    if (served.contains(file))
        return served[file];
    for (const tagLayout& layout : layouts) {
        if (layout.file == file)
            return layout.content;
    }
    for (const tagMedia& media : medias) {
        if (media.path == file)
            return media.content;
    }
    return QByteArray();
}
