// A small telephone exchange for trying phones: "hxRegistrar ACCOUNTS" registers the users of that file and
// connects their calls. It prints its address when it is there.
#include "registrar/pbx.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sofia-sip/sip_extra.h>
#include <sofia-sip/sip_parser.h>
#include <sofia-sip/su.h>
#include <sofia-sip/su_log.h>

namespace {

constexpr unsigned kMostPort = 65535, kMostRing = 600;

int usage()
{
    fprintf(stderr,
            "usage: hxRegistrar [--host ADDRESS] [--port PORT] [--ring SECONDS] [--expires SECONDS] [--md5] "
            "ACCOUNTS\n"
            "  ACCOUNTS          a file with a line \"USER PASSWORD NAME\" for each phone\n"
            "  --host ADDRESS    listen at this numeric address (default: 127.0.0.1, this machine alone)\n"
            "  --port PORT       default: any that is free\n"
            "  --ring SECONDS    a call that nobody answers so long becomes a message (default: 30)\n"
            "  --expires SECONDS how long a phone is registered, and unreachable after a restart, at most\n"
            "                    (default: 120)\n"
            "  --md5             ask for passwords by MD5 alone\n");
    return 2;
}

bool takeNumber(const char* text, unsigned least, unsigned most, unsigned& number)
{
    char* end = nullptr;
    const unsigned long value = strtoul(text, &end, 10);
    number = unsigned(value);
    return text[0] >= '0' && text[0] <= '9' && *end == 0 && value >= least && value <= most;
}

bool takeOptions(int argc, char** argv, tagPbxSetup& setup, std::string& file)
{
    for (int i = 1; i < argc; ++i) {
        const bool hasValue = i + 1 < argc;
        unsigned seconds = 0;
        if (strcmp(argv[i], "--md5") == 0) {
            setup.bSha256 = false;
        } else if (strcmp(argv[i], "--host") == 0 && hasValue) {
            setup.host = argv[++i];
        } else if (strcmp(argv[i], "--port") == 0 && hasValue) {
            if (!takeNumber(argv[++i], 0, kMostPort, setup.nPort))
                return false;
        } else if (strcmp(argv[i], "--ring") == 0 && hasValue) {
            if (!takeNumber(argv[++i], 1, kMostRing, seconds))
                return false;
            setup.nRingMs = seconds * 1000;
        } else if (strcmp(argv[i], "--expires") == 0 && hasValue) {
            if (!takeNumber(argv[++i], ContactBook::LEAST_SECONDS, ContactBook::MOST_SECONDS,
                            setup.nMostSeconds))
                return false;
        } else if (argv[i][0] != '-' && file.empty()) {
            file = argv[i];
        } else {
            return false;
        }
    }
    return !file.empty();
}

} // namespace

int main(int argc, char** argv)
{
    tagPbxSetup setup;
    std::string file, reason;
    if (!takeOptions(argc, argv, setup, file))
        return usage();
    AccountBook accounts;
    if (!accounts.load(file, reason)) {
        fprintf(stderr, "hxRegistrar: %s\n", reason.c_str());
        return 1;
    }
    if (AccountBook::isOpenToOthers(file))
        fprintf(stderr,
                "hxRegistrar: WARNING: other users of this machine can read the passwords in %s; "
                "\"chmod 600\" keeps them to yourself\n",
                file.c_str());
    // The stack would print whole messages to whoever reads the log.
    for (const char* name : {"TPORT_LOG", "TPORT_DUMP", "TPORT_DEBUG", "NTA_DEBUG", "SOFIA_DEBUG"})
        unsetenv(name);
    su_init();
    su_log_set_level(nullptr, 0);
    sip_update_default_mclass(sip_extend_mclass(nullptr));
    Pbx pbx(accounts);
    if (!pbx.open(setup)) {
        fprintf(stderr, "hxRegistrar: cannot listen at %s, port %u\n", setup.host.c_str(), setup.nPort);
        return 1;
    }
    printf("sip:%s\n", pbx.place().c_str());
    fflush(stdout);
    pbx.run();
    return 0;
}
