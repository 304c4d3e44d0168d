// Part of every program that is built with the sanitizers: what they are to leave alone, however the program
// is started. ASAN_OPTIONS and LSAN_OPTIONS still have the last word.
#include <cstddef>
#include <cstring>
#include <dlfcn.h>
#include <sanitizer/lsan_interface.h>
#include <unwind.h>

#define HX_FOR_SANITIZER extern "C" __attribute__((visibility("default"), weak))

namespace {

constexpr size_t kNamesStep = 2048 * sizeof(char*); // by so much GLib's table of names grows
constexpr size_t kNamesMax = 16 * kNamesStep;

struct tagCallers
{
    const void* pLibrary = nullptr; // whose g_malloc it was
    bool bOwn = false;              // it was called from within
};

_Unwind_Reason_Code look(_Unwind_Context* context, void* found)
{
    auto& callers = *static_cast<tagCallers*>(found);
    Dl_info info = {};
    const bool isKnown = dladdr(reinterpret_cast<void*>(_Unwind_GetIP(context)), &info) != 0;
    if (callers.pLibrary) {
        callers.bOwn = isKnown && info.dli_fbase == callers.pLibrary;
        return _URC_END_OF_STACK;
    }
    if (isKnown && info.dli_sname && strcmp(info.dli_sname, "g_malloc") == 0)
        callers.pLibrary = info.dli_fbase;
    return _URC_NO_REASON;
}

} // namespace

// GLib leaves its table of names behind when it makes a larger one: somebody may be reading it. No line below
// tells it from what is made with g_malloc elsewhere, as no more of its callers is kept.
HX_FOR_SANITIZER void __sanitizer_malloc_hook(const volatile void* block, size_t size)
{
    if (size == 0 || size % kNamesStep != 0 || size > kNamesMax)
        return;
    tagCallers callers;
    _Unwind_Backtrace(look, &callers);
    if (callers.bOwn)
        __lsan_ignore_object(const_cast<const void*>(block));
}

// The rich-text engine deletes its own objects by other sizes than it made them. What is freed stays by
// default until 256 MB are, and texts may not make the phone grow so far.
HX_FOR_SANITIZER const char* __asan_default_options()
{
    return "new_delete_type_mismatch=0:quarantine_size_mb=32";
}

// The sound library moves what it remembers for a lost packet by memcpy, over itself.
HX_FOR_SANITIZER const char* __asan_default_suppressions()
{
    return "interceptor_via_fun:plc_rx\n"
           "interceptor_via_fun:plc_fillin\n";
}

HX_FOR_SANITIZER const char* __lsan_default_options()
{
    return "print_suppressions=0";
}

HX_FOR_SANITIZER const char* __lsan_default_suppressions()
{
    // Font tables that the font library keeps until the process ends.
    return "leak:libfontconfig\n"
           // What the text engine keeps until the process ends.
           "leak:libQt6WebEngineCore\n";
}
