#include "tools/signServer/FeedsOnly.h"
#include "tools/signServer/FileAnswer.h"

void FeedsOnly::Answer(const WebRequest& request, const Reply& reply)
{
    if (request.asked.path.startsWith("/ig/")) {
        m_whole.Answer(request, reply);
        return;
    }
    WebResponse response;
    AnswerRefused(response, "no such service", 404);
    reply(response);
}
