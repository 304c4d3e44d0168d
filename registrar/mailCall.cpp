#include "registrar/mailCall.h"
#include "registrar/pbxText.h"
#include <algorithm>
#include <iterator>
#include <netinet/in.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

namespace {

// Those that need no further word about them: PCMA, PCMU, G.722.
const char* const kPlainFormats[] = {"8", "0", "9"};

bool isPlain(const std::string& format)
{
    return std::find(std::begin(kPlainFormats), std::end(kPlainFormats), format) != std::end(kPlainFormats);
}

std::string offerOf(nta_incoming_t* call)
{
    msg_t* message = nta_incoming_getrequest(call);
    const sip_payload_t* payload = sip_object(message)->sip_payload;
    const std::string text =
        payload && payload->pl_data ? std::string(payload->pl_data, payload->pl_len) : "";
    msg_destroy(message);
    return text;
}

} // namespace

MailCall::MailCall(su_root_t* root, nta_agent_t* agent, const std::string& place, nta_incoming_t* call)
    : m_pAgent(agent), m_pCall(call), m_dialog(agent, place, call), m_limit(root)
{
    const unsigned port = openEar();
    const std::string answer = port ? answerTo(offerOf(call), port) : "";
    m_bAnswered = m_dialog.isGood() && !answer.empty();
    if (!m_bAnswered) {
        nta_incoming_treply(call, SIP_488_NOT_ACCEPTABLE, TAG_END());
        m_bOver = true;
        return;
    }
    const std::string contact = "<" + m_dialog.ownAddress() + ">";
    nta_incoming_treply(call, SIP_200_OK, SIPTAG_CONTACT_STR(contact.c_str()),
                        SIPTAG_CONTENT_TYPE_STR("application/sdp"), SIPTAG_PAYLOAD_STR(answer.c_str()),
                        TAG_END());
    m_limit.start(TALK_MS, [this] { hangUp(); });
}

MailCall::~MailCall()
{
    nta_outgoing_destroy(m_pBye);
    nta_incoming_destroy(m_pCall);
    if (m_nEar >= 0)
        close(m_nEar);
}

unsigned MailCall::openEar()
{
    m_nEar = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* own = reinterpret_cast<sockaddr*>(&address);
    if (m_nEar < 0 || bind(m_nEar, own, size) != 0 || getsockname(m_nEar, own, &size) != 0)
        return 0;
    return ntohs(address.sin_port);
}

std::string MailCall::answerTo(const std::string& offer, unsigned port)
{
    std::istringstream lines(offer);
    std::string line, media;
    bool hasSound = false;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string kind, its, protocol, first;
        words >> kind >> its >> protocol >> first;
        if (kind.rfind("m=", 0) != 0 || first.empty())
            continue;
        std::string format = first;
        while (!isPlain(format) && words >> format) {
        }
        const bool isTaken = kind == "m=audio" && protocol == "RTP/AVP" && isPlain(format) && !hasSound;
        hasSound = hasSound || isTaken;
        media += kind + " " + std::to_string(isTaken ? port : 0) + " " + protocol + " " +
                 (isTaken ? format + "\r\na=recvonly" : first) + "\r\n";
    }
    return hasSound ? "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\n" + media
                    : "";
}

void MailCall::take(nta_incoming_t* request)
{
    const bool isBye = nta_incoming_method(request) == sip_method_bye;
    if (isBye)
        nta_incoming_treply(request, SIP_200_OK, TAG_END());
    else
        nta_incoming_treply(request, SIP_488_NOT_ACCEPTABLE, TAG_END());
    m_bOver = m_bOver || isBye;
}

void MailCall::hangUp()
{
    if (m_bOver)
        return;
    msg_t* message = m_dialog.request("BYE");
    m_pBye = message ? nta_outgoing_mcreate(m_pAgent, ReplyTaker::call, this, nullptr, message, TAG_END())
                     : nullptr;
    if (!m_pBye) {
        if (message)
            msg_destroy(message);
        m_bOver = true;
    }
}

void MailCall::onReply(nta_outgoing_t*, const sip_t* reply)
{
    m_bOver = m_bOver || !reply || !reply->sip_status || reply->sip_status->st_status >= 200;
}
