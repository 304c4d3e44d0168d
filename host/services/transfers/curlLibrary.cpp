#include "host/services/transfers/curlLibrary.h"
#include <dlfcn.h>

namespace {

const char* const kFile = "libcurl.so.4"; // the interface that its headers describe

// What the dynamic linker says about the last thing that it did not find.
QByteArray whatIsMissing()
{
    return QByteArray("no transfer library, ") + dlerror();
}

} // namespace

const curlLibrary& curlLibrary::instance()
{
    // The network thread uses it until the process's statics are gone.
    static const curlLibrary* const library = new curlLibrary;
    return *library;
}

curlLibrary::curlLibrary() : m_failure(load()) {}

// Empty when all is well. What is loaded stays until the process ends.
QByteArray curlLibrary::load()
{
    void* const library = dlopen(kFile, RTLD_LAZY | RTLD_LOCAL);
    if (!library)
        return whatIsMissing();
#define CURL_LIBRARY_FIND(function)                                                                          \
    function = reinterpret_cast<decltype(function)>(dlsym(library, "curl_" #function));                      \
    if (!function)                                                                                           \
        return whatIsMissing();
    CURL_LIBRARY_FUNCTIONS(CURL_LIBRARY_FIND)
#undef CURL_LIBRARY_FIND
    const CURLcode result = global_init(CURL_GLOBAL_DEFAULT);
    return result == CURLE_OK ? QByteArray()
                              : QByteArray("the transfer library does not start, ") + easy_strerror(result);
}
