#pragma once
// What the phone and its SIP user agent, the process "hxSip", tell each other over a stream socket: records
// of a fixed size, one after the other, each in the byte order of the machine. Texts are UTF-8, end with a
// zero and hold no control characters; a description of media (szSdp) may hold line ends, and is passed on as
// it is. An empty text is none. What a record does not set is zero.
//
// The phone tells SIP_SETUP first and once, then its accounts; the agent answers with SIP_HELLO, and from
// there on with what becomes of lines and calls. An agent that reads a damaged record ends; the phone starts
// another one.
#include <cstdint>

enum : int {
    SIP_LINE_COUNT = 4, // lines are 0 to 3
    SIP_CALLS_MAX = 2,  // at once; whoever calls then is told that the phone is busy
    SIP_JUDGED_MAX = 8, // at once, beside them: came in, and the phone has not let them ring or talk yet
    SIP_TEXT_SIZE = 128,
    SIP_HOST_SIZE = 256,
    SIP_TARGET_SIZE = 256, // a number, "user@host" or a whole "sip:" address
    SIP_SDP_SIZE = 16384,
    SIP_WATCHES_MAX = 40,  // at once; what is watched beyond them is not known
    SIP_MEMBERS_MAX = 256, // of a line's list; what is beyond them is left out
    SIP_MESSAGES_MAX = 999999,
    SIP_FORWARDS_MAX = 5,
    SIP_PLACES_MAX = 5 // where one redirection sends a call
};

// Ids of calls: the phone gives those of the calls that it makes, the agent those that come in. Never given
// again by one agent.
enum : uint32_t { SIP_CALL_FIRST = 1, SIP_CALL_FIRST_INCOMING = 0x80000000u };

enum SIP_RECORD : uint32_t {
    // From the phone.
    SIP_SETUP = 1,
    SIP_ACCOUNT = 2,
    SIP_END = 3, // no further fields: everything is hung up and unregistered, within two seconds
    SIP_DIAL = 10,
    SIP_RING = 11,
    SIP_ANSWER = 12,
    SIP_REFUSE = 13,
    SIP_DEFLECT = 14,
    SIP_HANG_UP = 15,
    SIP_MEDIA = 16,
    SIP_TRANSFER = 17,
    SIP_TONE = 18,
    SIP_NO_MEDIA = 19, // no further fields, of a call that talks: SIP_OFFER cannot be answered at present
    SIP_WATCH = 30,
    SIP_UNWATCH = 31, // no further fields
    SIP_WATCH_LIST = 32,
    SIP_PICK_UP = 33,
    SIP_CONNECT = 40,
    SIP_NETWORK = 41, // no further fields: the machine has other addresses, all lines are registered anew
    SIP_PING = 50,    // no further fields: is the agent alive?
    // From the agent.
    SIP_HELLO = 100, // no further fields: the stack is there
    SIP_LINE = 101,
    SIP_ARRIVED = 110,
    SIP_PROGRESS = 111,
    SIP_TALK = 112,
    SIP_OFFER = 113,
    SIP_ENDED = 114,
    SIP_TRANSFERRED = 115,
    SIP_PEER = 116,
    SIP_EARLY = 117,
    SIP_TONES_REFUSED = 118, // no further fields, of a call that talks, once: SIP_TONE does not get through
    SIP_PLACE = 119,
    SIP_MESSAGES = 130,
    SIP_LAMP = 131,
    SIP_LIST = 132,
    SIP_MEMBER = 133,
    SIP_REFERRED = 140,
    SIP_MAPPED = 141,
    SIP_STUN = 142,
    SIP_PONG = 150 // no further fields: at once, to each SIP_PING
};

struct tagSipHead
{
    uint32_t nLength; // bytes of the whole record, this head included: that of its kind
    uint32_t eKind;   // SIP_RECORD
    uint32_t nId;     // of the line, the call or the watch; 0 where the record is about none
    uint32_t nUnused; // 0
};

// How the agent behaves.
struct tagSipSetup
{
    tagSipHead head;
    char szAddress[SIP_HOST_SIZE];      // it listens at this numeric address; none: at all
    uint32_t nPort;                     // 0 to 65535; 0: any that is free
    uint32_t nTlsPort;                  // 0 to 65535; 0: any that is free
    char szAgent[SIP_TEXT_SIZE];        // how it calls itself
    char szCertificates[SIP_HOST_SIZE]; // folder of "cafile.pem" and "agent.pem"; none: no line has TLS
    char szNames[SIP_HOST_SIZE];        // file that says which name servers to ask; none: the system's
    uint32_t nSilentMs;                 // 100 to 30000: a server that says nothing for so long is given up
    uint32_t nRetryMs;                  // 50 to 600000: until a line is tried again, doubled each time
    uint32_t nRetryLastMs;              // nRetryMs to 3600000: the longest
    uint32_t nRingSeconds;              // 1 to 600: a call that nobody answers ends
    uint32_t nOfferMs;                  // 100 to 30000: the phone's time to answer SIP_OFFER or SIP_REFERRED
    uint32_t nKeepMs; // 0, or 100 to 600000: between signs of life that keep the way to servers open; 0: 25 s
};

enum SIP_TRANSPORT : uint32_t { SIP_UDP = 0, SIP_TCP = 1, SIP_TLS = 2 };

// An account of line nId, in place of the one before. One without a user is none: the line is unregistered.
struct tagSipAccount
{
    tagSipHead head;
    char szUser[SIP_TEXT_SIZE];
    char szDisplayName[SIP_TEXT_SIZE];
    char szAuthName[SIP_TEXT_SIZE]; // none: szUser
    char szPassword[SIP_TEXT_SIZE];
    char szRealm[SIP_TEXT_SIZE]; // only this one is told the password's digest; none: whoever asks
    char szServer[SIP_HOST_SIZE];
    uint32_t nPort;               // 0 to 65535; 0: as the domain's records say
    char szProxy[SIP_HOST_SIZE];  // outbound; none: everything goes to the server
    uint32_t nProxyPort;          // 0 to 65535, likewise
    uint32_t eTransport;          // SIP_TRANSPORT
    uint32_t nExpires;            // 60 to 86400 seconds that a registration lasts
    char szPickUp[SIP_TEXT_SIZE]; // code that takes a call, with the number where it rings behind it; or none
    char szStun[SIP_HOST_SIZE];   // server that says where others see the phone; none: nobody is asked
    uint32_t nStunPort;           // 0 to 65535; 1 at least where there is a server
};

enum SIP_LINE_STATE : uint32_t {
    SIP_LINE_NONE = 0, // no account, or unregistered
    SIP_LINE_REGISTERING = 1,
    SIP_LINE_REGISTERED = 2,
    SIP_LINE_FAILED = 3, // tried again in nRetryMs
    SIP_LINE_REFUSED = 4 // the server does not want it: tried again in nRetryMs, which is long
};

// Why there is no secure connection.
enum SIP_TLS_FAULT : uint32_t {
    SIP_TLS_NO_FAULT = 0,
    SIP_TLS_OTHER_FAULT = 1,
    SIP_TLS_OWN_FILES = 2,         // the phone has no certificates, or none that can be read
    SIP_TLS_OTHER_NAME = 3,        // the server's certificate is for another one
    SIP_TLS_UNKNOWN_AUTHORITY = 4, // who has signed it is not among those that are trusted
    SIP_TLS_EXPIRED = 5,
    SIP_TLS_NOT_YET_VALID = 6,
    SIP_TLS_OWN_CERTIFICATE = 7, // the server does not take the phone's, or misses it
    SIP_TLS_REFUSED = 8,         // by the server, for whatever else
    SIP_TLS_NOT_SPOKEN = 9       // there
};

struct tagSipLine
{
    tagSipHead head;
    uint32_t eState;              // SIP_LINE_STATE
    uint32_t nStatus;             // 0, or 100 to 699: of the reply that led to it
    uint32_t nRetryMs;            // 0 unless it failed or was refused
    uint32_t eTls;                // SIP_TLS_FAULT; none unless it failed or was refused
    char szReason[SIP_TEXT_SIZE]; // for a person, in English
};

// The address by which the server of a line sees this phone, told whenever it is another one; that of the
// STUN server where the line's own says nothing. It may differ from all that the phone has itself.
struct tagSipMapped
{
    tagSipHead head;
    uint32_t nPort; // 1 to 65535
    char szAddress[SIP_TEXT_SIZE];
};

// The STUN server of line nId answers: whoever wants to know where others see a port of his may ask it. Told
// when that is so, and without an address when it is so no more, or was never.
struct tagSipStun
{
    tagSipHead head;
    uint32_t nPort;                // 0 to 65535
    uint32_t bSilent;              // 0 or 1: it was asked, and has not answered; without an address
    char szAddress[SIP_TEXT_SIZE]; // IPv4
};

// A call from line nLine.
struct tagSipDial
{
    tagSipHead head;
    uint32_t nLine;
    uint32_t bAnonymous; // 0 or 1: "Privacy: id", and no own name
    uint32_t nReferrer;  // the call whose other side has asked for this one by SIP_REFERRED; 0: nobody has
    uint32_t nForwards;  // 0 to SIP_FORWARDS_MAX
    char szForwardedBy[SIP_FORWARDS_MAX][SIP_TARGET_SIZE]; // who has sent it on (SIP_REDIRECTED), the last
                                                           // one last; each as a target
    char szTarget[SIP_TARGET_SIZE];
    char szSdp[SIP_SDP_SIZE]; // the offer
};

// SIP_RING: a call that came in rings, with early media where there is a description, or with the offer where
// the caller wants one early. SIP_ANSWER: it talks, szSdp is the answer; nothing where the other side had the
// offer early. SIP_EARLY: the other side's answer to that offer, never empty. SIP_MEDIA, of a call that
// talks: the answer to SIP_OFFER where one waits, an empty one refuses it; else an offer (hold, resume,
// video). SIP_TALK: the call talks from here on, or its media are agreed on anew; szSdp is the other side's,
// and empty when it has refused an offer. SIP_OFFER: the other side offers other media; an empty one asks for
// an offer.
struct tagSipMedia
{
    tagSipHead head;
    char szSdp[SIP_SDP_SIZE];
};

// SIP_REFUSE: status 400 to 699 for a call that came in, or for what SIP_REFERRED of a call that talks asks.
// nWarning is of SIP_REFUSE: 0, or which of its media do not fit (300 to 399, RFC 3261, 20.43).
// SIP_TRANSFERRED: what became of SIP_TRANSFER or SIP_CONNECT, 200 to 699. SIP_HANG_UP: 0, or a status of 400
// to 699 that tells the other side why.
struct tagSipStatus
{
    tagSipHead head;
    uint32_t nStatus;
    uint32_t bTaken; // of SIP_TRANSFERRED, 0 or 1: the other side has made the call, whose status it is
    uint32_t nWarning;
};

// SIP_DEFLECT: a call that came in goes there instead. SIP_TRANSFER: the other side of a call that talks
// does. SIP_PLACE: where a call from here may go as well, told ahead of the SIP_ENDED that names the best
// place (SIP_REDIRECTED); the better one first, SIP_PLACES_MAX - 1 at most.
struct tagSipTarget
{
    tagSipHead head;
    char szTarget[SIP_TARGET_SIZE];
};

// SIP_CONNECT: the other sides of two calls that talk are to talk with each other. That of this call is asked
// to call that of nOther. Where it does, both calls end; else both stay.
struct tagSipConnect
{
    tagSipHead head;
    uint32_t nOther; // id of a call
};

// The other side of a call that talks asks the phone to call somebody. Who wants that dials with nReferrer,
// within nOfferMs; the other side is told how that goes.
struct tagSipReferred
{
    tagSipHead head;
    uint32_t bReplaces; // 0 or 1: the new call takes the place of one that szTarget has
    char szTarget[SIP_TARGET_SIZE];
};

struct tagSipTone
{
    tagSipHead head;
    uint32_t nTone; // one of "0123456789*#ABCD"
    uint32_t nMs;   // 40 to 5000
};

// A call has come in. The phone says what becomes of it.
struct tagSipArrived
{
    tagSipHead head;
    uint32_t nLine;
    uint32_t bAnonymous;  // 0 or 1
    uint32_t bAutoAnswer; // 0 or 1: the caller asks for an answer without a hand
    uint32_t nForwards;   // 0 to SIP_FORWARDS_MAX
    uint32_t nReplaces;   // the call whose place it takes when it is answered, at once; 0: none
    uint32_t nRefusal;    // 0, or 400 to 699: its body cannot be read, which is refused so; szSdp is empty
    uint32_t bWantsEarly; // 0 or 1: szSdp is empty, and the caller wants the offer as soon as it rings
    char szNumber[SIP_TEXT_SIZE];
    char szName[SIP_TEXT_SIZE];
    char szPicture[SIP_TARGET_SIZE]; // address of the caller's, by http or https; from the line's own server
                                     // alone
    char szForwardedBy[SIP_FORWARDS_MAX][SIP_TEXT_SIZE]; // the last phone that sent it on is the last one
    char szSdp[SIP_SDP_SIZE];                            // the offer; none: the caller wants one
};

// The other side of a call from here: it is under way (100 to 199), perhaps with early media. 0: the last of
// its servers has said nothing for nSilentMs, and is waited for all the same.
struct tagSipProgress
{
    tagSipHead head;
    uint32_t nStatus; // 0, or 100 to 199
    char szSdp[SIP_SDP_SIZE];
};

enum SIP_ENDING : uint32_t {
    SIP_HUNG_UP = 0,    // after it talked, by either side, or here while it went out
    SIP_CANCELLED = 1,  // the caller gave up
    SIP_ELSEWHERE = 2,  // another phone has answered it
    SIP_REFUSED = 3,    // with nStatus, by whoever was called
    SIP_REDIRECTED = 4, // to szTarget, by whoever was called
    SIP_UNANSWERED = 5, // it has rung too long
    SIP_BROKEN = 6,     // it could not be made, or was lost
    SIP_REPLACED = 7    // another call has taken its place
};

struct tagSipEnded
{
    tagSipHead head;
    uint32_t eEnding;             // SIP_ENDING
    uint32_t nStatus;             // 0, or 100 to 699; 408 of a call that broke: no server has said anything
    char szReason[SIP_TEXT_SIZE]; // for a person, in English
    char szTarget[SIP_TARGET_SIZE];
};

// What waits in the voice mail of line nId, told with each change. Not known: the line is not registered, or
// its server does not tell.
struct tagSipMessages
{
    tagSipHead head;
    uint32_t bKnown; // 0 or 1
    uint32_t nNew;   // 0 to SIP_MESSAGES_MAX
    uint32_t nOld;   // likewise
};

// SIP_WATCH: the phone wants to know what becomes of an extension. Its id is the phone's, from 1, and never
// given again; SIP_UNWATCH ends it. SIP_LAMP tells of it with each change; it begins as unknown.
struct tagSipWatch
{
    tagSipHead head;
    uint32_t nLine;                 // whose server is asked
    char szNumber[SIP_TARGET_SIZE]; // not empty
};

enum SIP_LAMP_STATE : uint32_t {
    SIP_LAMP_UNKNOWN = 0, // nobody tells
    SIP_LAMP_IDLE = 1,
    SIP_LAMP_RINGING = 2, // a call comes in there
    SIP_LAMP_BUSY = 3
};

struct tagSipLamp
{
    tagSipHead head;
    uint32_t eLamp; // SIP_LAMP_STATE
};

// SIP_WATCH_LIST is a tagSipTarget: the address of the list that the server of line nId keeps of extensions,
// in place of the one before. Without szTarget there is none. SIP_LIST tells how many extensions are on it
// from here on; the first of them comes with SIP_MEMBER, then the next. Later a SIP_MEMBER tells that it has
// changed.
struct tagSipList
{
    tagSipHead head;
    uint32_t nMembers; // 0 to SIP_MEMBERS_MAX
};

struct tagSipMember
{
    tagSipHead head;
    uint32_t nIndex;              // below nMembers
    uint32_t eLamp;               // SIP_LAMP_STATE
    char szNumber[SIP_TEXT_SIZE]; // as it is dialled
    char szName[SIP_TEXT_SIZE];
};

// The call that rings at szNumber is taken by a call from line nLine, of which the agent tells as of one that
// was dialled. What is watched, or is on the list of the line, is asked for the call itself; else the
// account's code is dialled.
struct tagSipPickUp
{
    tagSipHead head;
    uint32_t nLine;
    uint32_t bAnonymous;
    char szNumber[SIP_TARGET_SIZE]; // not empty
    char szSdp[SIP_SDP_SIZE];       // the offer
};

// Whom the call of SIP_PICK_UP is with, where the server of the line tells: before anything else of it.
struct tagSipPeer
{
    tagSipHead head;
    char szAddress[SIP_TARGET_SIZE]; // a whole one, not empty
    char szName[SIP_TEXT_SIZE];
};
