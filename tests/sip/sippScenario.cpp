#include "tests/sip/sippScenario.h"

namespace {

constexpr const char* kWay = "Via: SIP/2.0/[transport] [local_ip]:[local_port];branch=[branch]\n";
constexpr const char* kContact = "Contact: <sip:300@[local_ip]:[local_port]>\n";
constexpr const char* kOwnTag = ";tag=[pid]T[call_number]";

QByteArray escaped(QByteArray text)
{
    return text.replace('&', "&amp;").replace('"', "&quot;").replace('<', "&lt;").replace('>', "&gt;");
}

} // namespace

void SippScenario::flush()
{
    if (m_open.isEmpty())
        return;
    m_steps += m_open + (m_actions.isEmpty() ? "/>\n" : "><action>\n" + m_actions + "</action></recv>\n");
    m_open.clear();
    m_actions.clear();
}

void SippScenario::hear(const QByteArray& what)
{
    flush();
    m_open = "<recv " + what;
}

void SippScenario::remember(const QByteArray& name, const QByteArray& header, const QByteArray& expression)
{
    m_actions += "<ereg regexp=\"" + expression + "\" search_in=\"hdr\" header=\"" + header +
                 ":\" check_it=\"true\" assign_to=\"" + name + "\"/>\n";
    if (!m_strVariables.split(',').contains(name))
        m_strVariables += ',' + name;
}

QByteArray SippScenario::check(const QByteArray& expression, const char* kind)
{
    const QByteArray name = "check" + QByteArray::number(++m_nChecks);
    m_strVariables += ',' + name;
    return "<ereg regexp=\"" + escaped(expression) + "\" search_in=\"msg\" " + kind +
           "=\"true\" assign_to=\"" + name + "\"/>\n";
}

void SippScenario::send(const QByteArray& attributes, const QByteArray& head, const QByteArray& lines,
                        const QByteArray& body)
{
    flush();
    m_steps += "<send" + attributes + "><![CDATA[\n\n" + head + lines + (lines.isEmpty() ? "" : "\n");
    if (body.isEmpty())
        m_steps += "Content-Length: 0\n\n]]></send>\n";
    else
        m_steps += (lines.contains("Content-Type") ? "" : "Content-Type: application/sdp\n") +
                   QByteArray("Content-Length: [len]\n\n") + body + "\n]]></send>\n";
}

// The two header lines of who speaks with whom, in a request.
QByteArray SippScenario::ends() const
{
    if (m_eSide == CALLER)
        return QByteArray("From: <sip:300@[local_ip]>") + kOwnTag +
               (m_bKnown ? "\nTo:[$to]\n" : "\nTo: <sip:[service]@[remote_ip]>\n");
    return QByteArray("From:[$to]") + kOwnTag + "\nTo:[$from]\n";
}

SippScenario& SippScenario::asks(const QByteArray& method, const QByteArray& lines, const QByteArray& sdp)
{
    const bool isOfInvite = method == "ACK" || method == "CANCEL";
    // A refusal is acknowledged, and a call taken back, within its transaction.
    const bool isWithin = method == "CANCEL" || (method == "ACK" && m_nLastHeard >= 300);
    if (!isOfInvite)
        ++m_nNumber;
    if (method == "INVITE")
        m_nInvite = m_nNumber;
    const QByteArray number = QByteArray::number(isOfInvite ? m_nInvite : m_nNumber);
    const QByteArray target = m_bKnown && !isWithin ? "[$target]" : "sip:[service]@[remote_ip]:[remote_port]";
    QByteArray with = ends();
    if (method == "CANCEL")
        with = QByteArray("From: <sip:300@[local_ip]>") + kOwnTag + "\nTo: <sip:[service]@[remote_ip]>\n";
    else if (isWithin)
        with = "[last_From:]\n[last_To:]\n";
    send(method == "ACK" ? "" : " retrans=\"500\"",
         method + " " + target + " SIP/2.0\n" + (isWithin ? "[last_Via:]\n" : kWay) + with +
             "Call-ID: [call_id]\nCSeq: " + number + " " + method + "\nMax-Forwards: 70\n" + kContact,
         lines, sdp);
    m_lastAsked = method;
    return *this;
}

SippScenario& SippScenario::answersCall(const QByteArray& status, const QByteArray& lines,
                                        const QByteArray& sdp)
{
    send(status.startsWith('2') ? " retrans=\"500\"" : "",
         "SIP/2.0 " + status + "\nVia:[$via]\nFrom:[$from]\nTo:[$to]" + kOwnTag +
             "\nCall-ID: [call_id]\nCSeq:[$number]\n" + (lines.contains("Contact:") ? "" : kContact),
         lines, sdp);
    return *this;
}

SippScenario& SippScenario::answers(const QByteArray& status, const QByteArray& lines, const QByteArray& sdp)
{
    send("",
         "SIP/2.0 " + status + "\n[last_Via:]\n[last_From:]\n[last_To:]\n[last_Call-ID:]\n[last_CSeq:]\n" +
             (lines.contains("Contact:") ? "" : kContact),
         lines, sdp);
    return *this;
}

SippScenario& SippScenario::hears(const QByteArray& method)
{
    hear("request=\"" + method + "\"");
    m_nLastHeard = 0;
    if (m_eSide == CALLED && !m_bKnown && method == "INVITE") {
        remember("via", "Via");
        remember("from", "From");
        remember("to", "To");
        remember("number", "CSeq");
        remember("target", "Contact", "sip:[^&gt;]*");
    }
    if (m_eSide == CALLED && method == "ACK")
        m_bKnown = true;
    return *this;
}

SippScenario& SippScenario::hearsCall()
{
    m_bKnown = false;
    return hears("INVITE");
}

SippScenario& SippScenario::hears(int status)
{
    hear("response=\"" + QByteArray::number(status) + "\"");
    m_nLastHeard = status;
    if (m_lastAsked == "INVITE" && status > 100 && status < 300) {
        remember("to", "To");
        remember("target", "Contact", "sip:[^&gt;]*");
        m_bKnown = true;
    }
    return *this;
}

SippScenario& SippScenario::mayHear(int status)
{
    hear("response=\"" + QByteArray::number(status) + "\" optional=\"true\"");
    return *this;
}

SippScenario& SippScenario::with(const QByteArray& expression)
{
    m_actions += check(expression, "check_it");
    return *this;
}

SippScenario& SippScenario::within(int ms)
{
    m_open += " timeout=\"" + QByteArray::number(ms) + "\"";
    return *this;
}

SippScenario& SippScenario::keeps(const QByteArray& name, const QByteArray& header)
{
    remember(name, header);
    return *this;
}

SippScenario& SippScenario::without(const QByteArray& expression)
{
    m_actions += check(expression, "check_it_inverse");
    return *this;
}

SippScenario& SippScenario::withPassword(const QByteArray& user, const QByteArray& password)
{
    const QByteArray name = "verified" + QByteArray::number(++m_nChecks);
    m_strVariables += ',' + name;
    m_actions += "<verifyauth assign_to=\"" + name + "\" username=\"" + escaped(user) + "\" password=\"" +
                 escaped(password) + "\"/>\n";
    flush();
    // Where it is the right one, this is jumped over; else SIPp waits here for what never comes.
    const QByteArray label = QByteArray::number(m_nChecks);
    m_steps += "<nop test=\"" + name + "\" next=\"" + label + "\"/>\n<recv request=\"RIGHT-PASSWORD\"/>\n" +
               "<label id=\"" + label + "\"/>\n";
    return *this;
}

SippScenario& SippScenario::rests(int ms)
{
    flush();
    m_steps += "<pause milliseconds=\"" + QByteArray::number(ms) + "\"/>\n";
    return *this;
}

QByteArray SippScenario::text() const
{
    SippScenario whole(*this);
    whole.flush();
    QByteArray text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<scenario name=\"scenario\">\n" + whole.m_steps;
    if (!m_strVariables.isEmpty()) // some are only set, which SIPp takes for a mistake
        text += "<Reference variables=\"" + m_strVariables.mid(1) + "\"/>\n";
    return text + "</scenario>\n";
}
