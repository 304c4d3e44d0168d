#include "tools/signServer/WebServer.h"
#include <thread>
#include <vector>

WebServer::WebServer(WebService& service, int connections, int patienceMs)
    : m_book(connections), m_nPatienceMs(patienceMs), m_door(m_context, service, m_book, patienceMs)
{
}

int WebServer::Bind(const QByteArray& address, int port)
{
    return m_door.Bind(address, port);
}

void WebServer::BindWhenFree(const QByteArray& address, int port, WebService& service, const Door::Told& told)
{
    m_pSecond = std::make_unique<Door>(m_context, service, m_book, m_nPatienceMs);
    m_pSecond->BindWhenFree(address, port, told);
}

void WebServer::Run(int threads)
{
    m_door.Open();
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i)
        others.emplace_back([this] { m_context.run(); });
    m_context.run();
    for (std::thread& other : others)
        other.join();
}

void WebServer::Halt()
{
    const auto end = [this] { m_book.EndAll(); };
    m_door.Close(end);
    if (m_pSecond)
        m_pSecond->Close(end);
}
