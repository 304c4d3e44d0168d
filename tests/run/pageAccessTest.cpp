// Who gets the page and the screen: raw requests, as any program of this machine may send them.
#include "tests/run/runScript.h"
#include "tests/server/signServer.h"

namespace {

constexpr int kSilenceMs = 500;

struct Attempt
{
    const char* what;
    QByteArray target;
    QByteArray fields; // lines with their ends
};

class PageAccess : public testing::Test
{
protected:
    void SetUp() override { m_phone.startPage(); }

    QByteArray secret(const QByteArray& path = {}) const { return '/' + m_phone.token() + '/' + path; }
    QByteArray hostLine() const { return "Host: " + m_phone.host() + "\r\n"; }
    QByteArray originLine() const { return "Origin: " + m_phone.origin() + "\r\n"; }
    QByteArray port() const { return QByteArray::number(m_phone.port()); }
    Answer ask(const QByteArray& target, const QByteArray& fields, const QByteArray& method = "GET") const
    {
        const Wire wire(m_phone.port());
        wire.send(method + ' ' + target + " HTTP/1.1\r\n" + fields + "\r\n");
        return wire.readAll();
    }
    // The start of the answer, or of what the display server says behind it.
    QByteArray askSocket(const QByteArray& target, const QByteArray& fields) const
    {
        const Wire wire(m_phone.port());
        wire.send("GET " + target + " HTTP/1.1\r\n" + fields +
                  "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                  "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n");
        return wire.readFor(4096, kSilenceMs);
    }
    // None of them may come in; without what is wrong with it each would.
    QList<Attempt> attempts(const QByteArray& path) const
    {
        const QByteArray good = hostLine() + originLine(), target = secret(path), token = m_phone.token();
        QByteArray other = target;
        other[1] = other[1] == '0' ? '1' : '0';
        return {
            {"no token", "/" + path, good},
            {"another token", other, good},
            {"the token's first half", "/" + token.left(16) + "/" + path, good},
            {"more than the token", "/" + token + "0/" + path, good},
            {"the token in capitals", "/" + token.toUpper() + "x/" + path, good},
            {"the token as a question", "/" + path + "?token=" + token, good},
            {"a name that leads here", target, "Host: phone.example:" + port() + "\r\n" + originLine()},
            {"a name that leads here, of one origin with it", target,
             "Host: phone.example:" + port() + "\r\nOrigin: http://phone.example:" + port() + "\r\n"},
            {"another port", target, "Host: 127.0.0.1:1\r\nOrigin: http://127.0.0.1:1\r\n"},
            {"no port", target, "Host: 127.0.0.1\r\nOrigin: http://127.0.0.1\r\n"},
            {"no host", target, originLine()},
            {"two hosts", target, hostLine() + hostLine() + originLine()},
            {"a page of elsewhere", target, hostLine() + "Origin: http://evil.example\r\n"},
            {"a page of another port", target, hostLine() + "Origin: http://127.0.0.1:1\r\n"},
            {"a page of the other name", target, hostLine() + "Origin: http://localhost:" + port() + "\r\n"},
            {"a page of a file", target, hostLine() + "Origin: null\r\n"},
            {"a secure page", target, hostLine() + "Origin: https://" + m_phone.host() + "\r\n"},
            {"two origins", target, good + "Origin: http://evil.example\r\n"},
        };
    }

    RunScript m_phone;
};

} // namespace

TEST_F(PageAccess, OpensToThePrintedAddress)
{
    const Answer start = ask(secret(), hostLine());
    EXPECT_EQ(start.status, 302);
    const QByteArray page = start.fields.value("location");
    EXPECT_TRUE(page.startsWith(secret("vnc.html?"))) << page.constData();
    const Answer answer = ask(page, hostLine());
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.fields.value("content-type"), "text/html; charset=utf-8");
    EXPECT_TRUE(answer.body.contains("app/ui.js"));
    EXPECT_EQ(ask(secret("vnc.html"), "Host: localhost:" + port() + "\r\n").status, 200);
    EXPECT_EQ(ask("/" + m_phone.token(), hostLine()).status, 302);
}

TEST_F(PageAccess, TellsNobodyTheAddress)
{
    const std::pair<QByteArray, int> answers[] = {{"", 302}, {"vnc.html", 200}, {"nothing.js", 404}};
    for (const auto& [path, status] : answers) {
        const Answer answer = ask(secret(path), hostLine());
        EXPECT_EQ(answer.status, status) << path.constData();
        EXPECT_EQ(answer.fields.value("referrer-policy"), "no-referrer") << path.constData();
        EXPECT_EQ(answer.fields.value("cache-control"), "no-store") << path.constData();
        EXPECT_EQ(answer.fields.value("cross-origin-resource-policy"), "same-origin") << path.constData();
        EXPECT_EQ(answer.fields.value("content-security-policy"), "frame-ancestors 'none'")
            << path.constData();
    }
    EXPECT_FALSE(ask("/", hostLine()).raw.contains(m_phone.token()));
}

TEST_F(PageAccess, RefusesWhoeverDoesNotKnowTheTokenOrComesFromElsewhere)
{
    for (const Attempt& attempt : attempts("vnc.html")) {
        const Answer answer = ask(attempt.target, attempt.fields);
        EXPECT_EQ(answer.status, 403) << attempt.what;
        EXPECT_FALSE(answer.body.contains("app/ui.js")) << attempt.what;
    }
    EXPECT_EQ(ask("/", hostLine()).status, 403);
    EXPECT_EQ(ask("/", hostLine(), "POST").status, 403);
}

TEST_F(PageAccess, OpensTheScreenToItsOwnPageAlone)
{
    const QByteArray right = askSocket(secret("screen"), hostLine() + originLine());
    EXPECT_TRUE(right.startsWith("HTTP/1.1 101")) << right.constData();
    EXPECT_TRUE(right.contains("RFB 003.")) << right.constData();
    QList<Attempt> wrong = attempts("screen");
    wrong.append({"no page", secret("screen"), hostLine()});
    for (const Attempt& attempt : wrong) {
        const QByteArray answer = askSocket(attempt.target, attempt.fields);
        EXPECT_TRUE(answer.startsWith("HTTP/1.1 403")) << attempt.what << ": " << answer.constData();
        EXPECT_FALSE(answer.contains("RFB 003.")) << attempt.what;
    }
}

TEST_F(PageAccess, ReadsTheFilesOfThePageAndNothingElse)
{
    EXPECT_EQ(ask(secret("core/rfb.js"), hostLine()).fields.value("content-type"),
              "text/javascript; charset=utf-8");
    for (const char* path : {"core/", "core", "core/input/", "../../../etc/passwd",
                             "%2e%2e/%2e%2e/%2e%2e/etc/passwd", "..%2f..%2f..%2fetc/passwd", "/etc/passwd",
                             "core/../../../../etc/passwd", "vnc.html%00.js", "missing.html"})
        EXPECT_EQ(ask(secret(path), hostLine()).status, 404) << path;
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "CONNECT"})
        EXPECT_EQ(ask(secret("vnc.html"), hostLine(), method).status, 405) << method;
    const Answer head = ask(secret("vnc.html"), hostLine(), "HEAD");
    EXPECT_EQ(head.status, 200);
    EXPECT_TRUE(head.body.isEmpty());
}

TEST_F(PageAccess, AnswersWhoeverComesWhileOthersSayNothing)
{
    std::vector<std::unique_ptr<Wire>> silent;
    for (int i = 0; i < 200; ++i) {
        silent.push_back(std::make_unique<Wire>(m_phone.port()));
        silent.back()->send("GET /");
    }
    EXPECT_EQ(ask(secret("vnc.html"), hostLine()).status, 200);
    EXPECT_EQ(ask("/" + QByteArray(100000, 'a'), hostLine()).status, 400);
    EXPECT_EQ(ask("/ /", hostLine()).status, 400);
    EXPECT_EQ(ask(secret("vnc.html"), "Host : " + m_phone.host() + "\r\n").status, 400);
    EXPECT_EQ(ask(secret("vnc.html"), hostLine()).status, 200);
}
