// Replies to a registration. A reply counts as good only where its element stands in its place.
#include "signage/scheduleReader.h"
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    xmlDocument reply;
    reply.ParseDocument(text.data(), static_cast<int>(text.size()));
    const xmlElement* success = serverResult(reply, "success");
    if (!success)
        return 0;
    const char* const way[] = {"success", "result", "ndeck", "norvane"};
    const xmlBaseNode* node = success;
    for (const char* name : way) {
        if (strcmp(node->GetName(), name) != 0)
            abort();
        node = node->GetParent();
    }
    if (node != &reply)
        abort();
    return 0;
}
