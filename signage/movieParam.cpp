#include "signage/movieParam.h"
#include "support/host/trace.h"
#include <strings.h>

namespace {

constexpr int kAudioPayload = 96;
constexpr int kVideoPayload = 97;
const char* const kAudioParam =
    "96 profile-level-id=15;mode=AAC-hbr;sizelength=13;indexlength=3;indexdeltalength=3;config=1210";
const char* const kVideoParam = "97 packetization-mode=1;profile-level-id=42C033;"
                                "sprop-parameter-sets=Z0LAM6tAsEtCAAADAAIAAAMAYR4wZUA=,aM48gA==";

template <int SIZE>
void endText(char (&field)[SIZE])
{
    field[SIZE - 1] = 0;
}

} // namespace

MOV_SDP defaultMovieSDP()
{
    MOV_SDP sdp = {};
    sdp.nAudPayload = kAudioPayload;
    copyPlayerText(sdp.szAudName, "mpeg4-generic");
    copyPlayerText(sdp.szAudParam, kAudioParam);
    sdp.nAudRate = 44100;
    sdp.nChannels = 2;
    sdp.nVidPayload = kVideoPayload;
    copyPlayerText(sdp.szVidName, "H264");
    copyPlayerText(sdp.szVidParam, kVideoParam);
    sdp.nVidRate = 90000;
    return sdp;
}

void endMovieTexts(MOV_SDP& sdp)
{
    endText(sdp.szAudName);
    endText(sdp.szAudParam);
    endText(sdp.szVidName);
    endText(sdp.szVidParam);
}

void PrintMovieSDP(const MOV_SDP& sdp)
{
    nuxTrace(TRACE_DETAIL, "Aud Dec Codec Payload: %d", sdp.nAudPayload);
    nuxTrace(TRACE_DETAIL, "Aud Dec Codec Name: %s", sdp.szAudName);
    nuxTrace(TRACE_DETAIL, "Aud Dec Codec Param: %s", sdp.szAudParam);
    nuxTrace(TRACE_DETAIL, "Aud Codec Rate: %d", sdp.nAudRate);
    nuxTrace(TRACE_DETAIL, "Channel Number: %d", sdp.nChannels);
    nuxTrace(TRACE_DETAIL, "Vid Dec Codec Payload: %d", sdp.nVidPayload);
    nuxTrace(TRACE_DETAIL, "Vid Dec Codec Name: %s", sdp.szVidName);
    nuxTrace(TRACE_DETAIL, "Vid Dec Codec Param: %s", sdp.szVidParam);
    nuxTrace(TRACE_DETAIL, "Vid Codec Rate: %d", sdp.nVidRate);
}

void PrintMovieParam(const ADDR_PARAM& param)
{
    nuxTrace(TRACE_DETAIL, "File Path: %s", param.szFile);
    nuxTrace(TRACE_DETAIL, "Local IP Address: %s", param.szLocalIP);
    nuxTrace(TRACE_DETAIL, "Remote IP Address: %s", param.szRemoteIP);
    nuxTrace(TRACE_DETAIL, "Local Audio Port: %d", param.nLocalAudioPort);
    nuxTrace(TRACE_DETAIL, "Remote Audio Port: %d", param.nRemoteAudioPort);
    nuxTrace(TRACE_DETAIL, "Local Video Port: %d", param.nLocalVideoPort);
    nuxTrace(TRACE_DETAIL, "Remote Video Port: %d", param.nRemoteVideoPort);
}

const char* audioCodecName(const char* streamName)
{
    const bool isAac =
        strcasecmp(streamName, "MP4A-LATM") == 0 || strcasecmp(streamName, "mpeg4-generic") == 0;
    return isAac ? "AACLC" : nullptr;
}

const char* videoCodecName(const char* streamName)
{
    if (strcasecmp(streamName, "MP4V-ES") == 0)
        return "MPEG4";
    return strcasecmp(streamName, "H264") == 0 ? "H264" : "H263";
}
