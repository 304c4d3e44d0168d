#include "host/services/phone/sipReasons.h"
#include "support/host/api.h"
#include <cstring>

namespace {

constexpr uint32_t kNothingHeard = 408; // where nobody was called
constexpr uint32_t kUnavailable = 480;
const char* const kWrongPassword = HX_TR("The server does not accept name or password");

const char* reasonOfTls(uint32_t fault)
{
    switch (fault) {
    case SIP_TLS_OWN_FILES:
        return HX_TR("The phone has no usable certificates");
    case SIP_TLS_OTHER_NAME:
        return HX_TR("The certificate of the server is for another name");
    case SIP_TLS_UNKNOWN_AUTHORITY:
        return HX_TR("The certificate of the server is from an unknown authority");
    case SIP_TLS_EXPIRED:
        return HX_TR("The certificate of the server has expired");
    case SIP_TLS_NOT_YET_VALID:
        return HX_TR("The certificate of the server is not valid yet");
    case SIP_TLS_OWN_CERTIFICATE:
        return HX_TR("The server does not accept the certificate of the phone");
    case SIP_TLS_REFUSED:
        return HX_TR("The server refuses a secure connection");
    case SIP_TLS_NOT_SPOKEN:
        return HX_TR("The server knows no secure connection");
    default:
        return HX_TR("There is no secure connection to the server");
    }
}

// Of a REGISTER; status: 0 where there was none.
const char* reasonOfReply(uint32_t status)
{
    if (status >= 500 && status < 600)
        return HX_TR("The server is out of service");
    switch (status) {
    case 0:
        return HX_TR("The line is not registered");
    case 401:
    case 407: // that cannot be answered
        return HX_TR("The server asks for the password in an unknown way");
    case 403:
        return kWrongPassword;
    case 404:
    case 410:
    case 604:
        return HX_TR("The server does not know the user name");
    default:
        return HX_TR("The server refuses the registration");
    }
}

} // namespace

const char* sipReasonOf(uint32_t status)
{
    switch (status) {
    case 486:
    case 600:
        return HX_TR("Busy");
    case 603:
        return HX_TR("The call was declined");
    case 404:
    case 410:
    case 484:
    case 485:
    case 604:
        return HX_TR("This number is not known");
    case 408:
    case 480:
        return HX_TR("Not available at present");
    case 401:
    case 407: // for the second time
        return kWrongPassword;
    case 402:
    case 403:
        return HX_TR("The server does not allow this call");
    case 433:
        return HX_TR("Anonymous calls are not accepted");
    case 415:
    case 488:
    case 606:
        return HX_TR("The two phones have no sound in common");
    default:
        return HX_TR("The call could not be made");
    }
}

const char* sipReasonOfTransfer(uint32_t status, bool isTaken)
{
    if (!isTaken && status == kNothingHeard)
        return HX_TR("The server does not answer");
    if (isTaken && status < 400)
        return sipReasonOf(kUnavailable); // he is elsewhere, and where he is nobody has reached him
    const bool isSilent = status == 480 || status == 503;
    return isTaken || isSilent ? sipReasonOf(status) : HX_TR("The other side refuses the transfer");
}

const char* sipReasonOfLine(const tagSipLine& line)
{
    // As the agent has them.
    static const char* const told[] = {kWrongPassword, HX_TR("The server does not answer"),
                                       HX_TR("The server's name is not known"),
                                       HX_TR("The name service does not answer")};
    if (line.eTls != SIP_TLS_NO_FAULT)
        return reasonOfTls(line.eTls);
    for (const char* reason : told) {
        if (strcmp(reason, line.szReason) == 0)
            return reason;
    }
    return reasonOfReply(line.nStatus);
}

uint32_t sipStatusOf(CALL_END why)
{
    enum { UNAVAILABLE = 480, BUSY = 486, NOT_ACCEPTABLE = 488, ANONYMITY_DISALLOWED = 433, DECLINE = 603 };
    switch (why) {
    case CALL_DECLINED:
        return DECLINE;
    case CALL_DISTURBED:
        return UNAVAILABLE;
    case CALL_REJECTED:
        return ANONYMITY_DISALLOWED;
    case CALL_UNFIT:
        return NOT_ACCEPTABLE;
    default:
        return BUSY;
    }
}

uint32_t sipWarningOf(CALL_FIT fit)
{
    enum {
        OTHER_ADDRESS = 301,
        OTHER_TRANSPORT = 302,
        OTHER_MEDIA = 304,
        OTHER_FORMAT = 305,
        NOT_UNDERSTOOD = 307
    };
    switch (fit) {
    case CALL_NO_DESCRIPTION:
        return NOT_UNDERSTOOD;
    case CALL_NO_SOUND:
        return OTHER_MEDIA;
    case CALL_NO_TRANSPORT:
        return OTHER_TRANSPORT;
    case CALL_NO_ADDRESS:
        return OTHER_ADDRESS;
    case CALL_NO_FORMAT:
        return OTHER_FORMAT;
    default:
        return 0;
    }
}
