#pragma once
// What the phone, the movie player ("app_hxMovie") and the media server ("app_hxMedia") say to each other.
// The records travel as they lie in memory between processes of one device: texts are UTF-8 and end with
// a zero, numbers have the byte order of the machine, a record of another size is refused.
#include <cstdint>
#include <type_traits>

enum : unsigned int {
    // To "app_hxMovie".
    MOVIE_MSG_GET_SDP = 0x110001,    // extra: file path with its zero; sent and waited for, reply: MOV_SDP
    MOVIE_MSG_PLAY_PARAM = 0x110002, // extra: ADDR_PARAM; wParam: who hears MOVIE_MSG_FINISHED
    MOVIE_MSG_PLAY_LIST = 0x110003,  // plays the list round and round; wParam: as above
    MOVIE_MSG_PAUSE = 0x110004,
    MOVIE_MSG_RESUME = 0x110005,
    MOVIE_MSG_STOP = 0x110006,
    MOVIE_MSG_PREVIOUS = 0x110007,
    MOVIE_MSG_NEXT = 0x110008,
    MOVIE_MSG_LIST_ADD = 0x110009, // extra: file path with its zero
    MOVIE_MSG_LIST_CLEAR = 0x11000A,
    // From "app_hxMovie".
    MOVIE_MSG_FINISHED = 0x120002, // the file came to its end, or nothing of the list can be played
    // To "app_hxMedia".
    MEDIA_MSG_SESSION_START = 0x70001,  // extra: VOICE_PARAM; wParam: session id
    MEDIA_MSG_SESSION_STOP = 0x70002,   // wParam: session id
    MEDIA_MSG_SESSION_CHANGE = 0x7000d, // extra: VOICE_PARAM; the picture moves
    // Between the two players: what comes next on a session's ports, and that somebody waits for it there.
    MEDIA_MSG_STREAMS = 0x70020,   // to "app_hxMedia"; extra: PLAYER_STREAMS; wParam: PLAYER_PORTS
    MOVIE_MSG_RECEIVER = 0x110020, // to "app_hxMovie"; wParam: PLAYER_PORTS
    // To "app_hxMovie", before the other: somebody will, once it has loaded what it needs.
    MOVIE_MSG_RECEIVER_COMES = 0x110021,
    // The picture's way to the screen.
    MEDIA_MSG_FRAME = 0x120021,       // to "app_hxPhone": wParam: process, lParam: its memory of pictures
    MEDIA_MSG_PICTURE_SIZE = 0x70021, // to "app_hxMedia": size of the surface; wParam: width, lParam: height
    MEDIA_MSG_VOLUME = 0x70022,       // to "app_hxMedia": the phone's volume; wParam: 0 to 100
    // To "app_hxMedia": wParam: non-zero silences the session, until it ends. A session begins aloud: before
    // it the phone mutes its output so that nothing of its own mixes in.
    MEDIA_MSG_MUTE = 0x70023,
    // Tones of the phone itself, to "app_hxMedia": they sound beside a session, at the phone's volume.
    MEDIA_MSG_TONE_PLAY = 0x70024, // a sound file; extra: file path with its zero; wParam: non-zero: round
                                   // and round; lParam: its number, for MEDIA_MSG_TONE_FAILED
    MEDIA_MSG_TONE_STOP = 0x70025,
    MEDIA_MSG_TONE_KEY = 0x70026,  // a short tone; wParam: the character of a DTMF key
    MEDIA_MSG_TONE_MUTE = 0x70027, // wParam: non-zero silences them, until it is taken back
    // From "app_hxMedia": the file cannot be played; lParam: its number.
    MEDIA_MSG_TONE_FAILED = 0x120022,
    // Calls on the wire, to "app_hxMedia"; wParam: the call, lParam: what the message says. Descriptions are
    // SDP texts with their zero, behind the record where there is one.
    MEDIA_MSG_CALL_PREPARE = 0x7003A,  // calls may come: what they need is loaded
    MEDIA_MSG_CALL_OFFER = 0x70030,    // extra: CALL_WISH; lParam: number of the request
    MEDIA_MSG_CALL_ANSWER = 0x70031,   // extra: CALL_WISH and the offer; lParam: number of the request
    MEDIA_MSG_CALL_AGREE = 0x70032,    // extra: the answer; lParam: its number
    MEDIA_MSG_CALL_WITHDRAW = 0x70033, // the last offer was refused
    MEDIA_MSG_CALL_MUTE = 0x70034,     // lParam: non-zero: the other side does not hear the user
    MEDIA_MSG_CALL_STILL = 0x7003D,    // lParam: non-zero: the user holds it: nothing goes out or is heard
    MEDIA_MSG_CALL_TONE = 0x70035,     // lParam: CALL_TONE
    MEDIA_MSG_CALL_JOIN = 0x70036,     // lParam: the other call
    MEDIA_MSG_CALL_SPLIT = 0x70037,
    MEDIA_MSG_CALL_END = 0x70038,
    MEDIA_MSG_CALL_BEGIN = 0x7003B, // what was a preview goes both ways
    // Whether an offer could be answered, of a call that is none yet; extra: CALL_WISH and the offer; lParam:
    // number of the request.
    MEDIA_MSG_CALL_JUDGE = 0x7003C,
    // Where the user's own picture lies upon the other side's, in the surface's pixels: wParam: left and top,
    // lParam: width and height, the first of each in the upper half; 0: nowhere. Its corners are round, by
    // CALL_OWN_CORNER pixels.
    MEDIA_MSG_OWN_PLACE = 0x70039,
    // From "app_hxMedia".
    MEDIA_MSG_CALL_DESCRIBED =
        0x120030,                      // extra: the description, none when there is none; lParam: the request
    MEDIA_MSG_CALL_STREAMS = 0x120031, // extra: CALL_STREAMS
    MEDIA_MSG_CALL_UNFIT = 0x120032,   // an answer does not fit; lParam: its number
    MEDIA_MSG_CALL_JUDGED = 0x120033,  // wParam: CALL_FIT; lParam: the request
    // Broadcast by a player that has just started, also after one died: what was asked of the one before
    // is forgotten. wParam: PLAYER_PROGRAM.
    PLAYER_MSG_UP = 0x120020,
    // To a player, which answers at once with the same to "app_hxPhone". wParam: PLAYER_PROGRAM.
    PLAYER_MSG_ALIVE = 0x120023,
};

enum PLAYER_PROGRAM : unsigned int { PLAYER_MOVIE = 1, PLAYER_MEDIA = 2 };

// The session that the movie player starts for its list. A stop with this id ends no other session; with any
// other id it ends whichever there is.
enum : unsigned int { MEDIA_SESSION_LIST = 0x4c495354 };

// The ports of both streams in one word.
constexpr unsigned int PLAYER_PORTS(unsigned int audio, unsigned int video)
{
    return audio | video << 16;
}

enum : uint16_t { PLAYER_AUDIO_PORT = 35600, PLAYER_VIDEO_PORT = 35620 }; // unless a session names others

class chThreadBase;

// What stands for a thread in a message: the phone is the only one that hears of the players.
enum : unsigned int { PLAYER_THREAD_NONE = 0, PLAYER_THREAD_PHONE = 1 };
inline unsigned int playerThreadNumber(const chThreadBase* thread)
{
    return thread ? PLAYER_THREAD_PHONE : PLAYER_THREAD_NONE;
}

enum : int {
    PLAYER_ADDRESS_SIZE = 16,
    PLAYER_NAME_SIZE = 24,
    PLAYER_PARAM_SIZE = 256,
    PLAYER_FILE_SIZE = 164
};

// The streams of a file. A payload of 0 with an empty name: the file has no such stream.
struct MOV_SDP
{
    int32_t nAudPayload;
    char szAudName[PLAYER_NAME_SIZE]; // as in a=rtpmap: "mpeg4-generic", "PCMA"
    char szAudParam[128];             // payload number, a space, the text of a=fmtp
    int32_t nAudRate;                 // clock rate in Hz
    int32_t nChannels;
    int32_t nVidPayload;
    char szVidName[PLAYER_NAME_SIZE]; // "H264", "MP4V-ES", "H263"
    char szVidParam[PLAYER_PARAM_SIZE];
    int32_t nVidRate;
};

// What comes on a session's ports.
struct PLAYER_STREAMS
{
    MOV_SDP sdp;
    // The ports of the player's own sockets: what comes from others is not the player's. 0: nothing comes.
    uint16_t nSoundFrom;
    uint16_t nPictureFrom;
    // By which the pictures are to be turned, clockwise: 0 to 3; 4 more: mirrored before, left to right.
    uint16_t nQuarterTurns;
    uint16_t bDecodeOrder; // non-zero: stamps tell when a picture is decoded, not when it is shown
};

// Where the player sends the streams of a file. A remote port of 0: the stream is not sent.
struct ADDR_PARAM
{
    char szFile[PLAYER_FILE_SIZE]; // device path
    char szLocalIP[PLAYER_ADDRESS_SIZE];
    char szRemoteIP[PLAYER_ADDRESS_SIZE];
    uint16_t nLocalAudioPort;
    uint16_t nRemoteAudioPort;
    uint16_t nLocalVideoPort;
    uint16_t nRemoteVideoPort;
};

// One direction of a codec.
struct MEDIA_CODEC
{
    int32_t nPayload;
    char szName[PLAYER_NAME_SIZE]; // "AACLC", "PCMA", "H264", "MPEG4", "H263"
    char szParam[64];
};

// In pixels of the screen.
struct MEDIA_RECT
{
    int32_t x;
    int32_t y;
    int32_t width;
    int32_t height;
};

// A session of the media server: it receives on the remote ports what the player sends there, and shows it.
struct VOICE_PARAM
{
    char szLocalIP[PLAYER_ADDRESS_SIZE];
    char szAudRemoteIP[PLAYER_ADDRESS_SIZE];
    char szVidRemoteIP[PLAYER_ADDRESS_SIZE];
    uint16_t nAudLocalPort;
    uint16_t nAudRemotePort;
    uint16_t nVidLocalPort;
    uint16_t nVidRemotePort;
    MEDIA_CODEC audEnc;
    MEDIA_CODEC audDec;
    MEDIA_CODEC vidEnc;
    MEDIA_CODEC vidDec;
    int32_t nAudRate; // Hz
    int32_t nVidRate;
    int32_t nChannels;
    char szAudMime[PLAYER_NAME_SIZE]; // mime subtype
    char szVidMime[PLAYER_NAME_SIZE];
    char szAudSdpParam[PLAYER_PARAM_SIZE];
    char szVidSdpParam[PLAYER_PARAM_SIZE];
    MEDIA_RECT rcRemote; // the picture that is received; empty: the whole surface
    MEDIA_RECT rcLocal;  // the phone's own picture; zero for none
    char reserved[536];  // zero
};

enum CALL_CAMERA : uint32_t {
    CALL_CAMERA_OFF,
    CALL_CAMERA_ON, // in a call that begins so; the other side cannot have it later
    CALL_CAMERA_NOW // the user has said so
};

// What an offer lacks of what could be answered. Of several lines of sound the one that lacks least.
enum CALL_FIT : uint32_t {
    CALL_FITS = 0,
    CALL_NO_DESCRIPTION = 1, // it cannot be read
    CALL_NO_SOUND = 2,       // that has a port
    CALL_NO_TRANSPORT = 3,   // that is spoken, and as encrypted as it has to be
    CALL_NO_ADDRESS = 4,     // that sound may be sent to
    CALL_NO_FORMAT = 5       // that is known here
};

// What the phone wants of a call's media.
struct CALL_WISH
{
    char szLocalIP[PLAYER_ADDRESS_SIZE]; // by which the other side reaches the phone
    uint32_t bHeld;
    uint32_t bEncrypt;
    uint32_t bVideo;
    uint32_t eCamera;    // CALL_CAMERA
    uint32_t nBandwidth; // kbit/s of pictures; 0: what the network bears
    uint32_t nFrameRate;
    uint32_t bPreview;                  // only what the other side shows, until MEDIA_MSG_CALL_BEGIN
    char szStunIP[PLAYER_ADDRESS_SIZE]; // the server that says where others see the phone; empty: none
    uint32_t nStunPort;
};

enum : int {
    CALL_DESCRIPTION_SIZE = 16384, // with its zero
    CALL_OWN_CORNER = 10           // pixels
};

// A key and how long it sounds, in one word.
constexpr unsigned int CALL_TONE(char tone, unsigned int ms)
{
    return static_cast<unsigned char>(tone) | ms << 8;
}

// What goes over the wire of a call.
struct CALL_STREAMS
{
    char szSound[PLAYER_NAME_SIZE];   // of the codec, for a person; empty: no sound
    char szPicture[PLAYER_NAME_SIZE]; // the same of pictures
    int32_t nQuality;                 // 0 to 4; -1: not known
    uint32_t bEncrypted;
    uint32_t nTones;        // that the other side takes within the sound: a bit of each of "0123456789*#ABCD"
    uint32_t bOtherHolds;   // it wants to hear nothing
    uint32_t bOwnPicture;   // the other side is sent the user's
    uint32_t bOtherPicture; // pictures of the other side come
};

static_assert(sizeof(CALL_WISH) == 64 && std::is_trivially_copyable_v<CALL_WISH>);
static_assert(sizeof(CALL_STREAMS) == 72 && std::is_trivially_copyable_v<CALL_STREAMS>);
static_assert(sizeof(MOV_SDP) == 452 && std::is_trivially_copyable_v<MOV_SDP>);
static_assert(sizeof(PLAYER_STREAMS) == 460 && std::is_trivially_copyable_v<PLAYER_STREAMS>);
static_assert(sizeof(ADDR_PARAM) == 204 && std::is_trivially_copyable_v<ADDR_PARAM>);
static_assert(sizeof(VOICE_PARAM) == 1564 && std::is_trivially_copyable_v<VOICE_PARAM>);
