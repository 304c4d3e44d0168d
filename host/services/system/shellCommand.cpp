#include "host/services/system/shellCommand.h"
#include "support/file/deviceRoot.h"
#include "support/host/trace.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// What a device file system has and another machine's has not; all other paths are the machine's own.
constexpr std::string_view kDeviceFolders[] = {"/phone", "/rundata", "/storage", "/mini-boot"};
constexpr std::string_view kStopPrograms[] = {"reboot", "poweroff", "halt", "shutdown", "init", "telinit"};
constexpr std::string_view kWordBreaks = " \t\n;|&()<>=:,'\"`";
constexpr std::string_view kCommandBreaks = ";|&(\n`";

bool isOneOf(char c, std::string_view set)
{
    return set.find(c) != std::string_view::npos;
}

bool startsDevicePath(std::string_view rest)
{
    return std::any_of(std::begin(kDeviceFolders), std::end(kDeviceFolders), [rest](std::string_view folder) {
        const bool same = rest.substr(0, folder.size()) == folder;
        return same && (rest.size() == folder.size() || rest[folder.size()] == '/' ||
                        isOneOf(rest[folder.size()], kWordBreaks));
    });
}

// text as it must stand between quotes of that kind, or outside of them (0).
std::string quotedFor(char quote, const std::string& text)
{
    std::string result;
    for (char c : text) {
        if (quote == '\'')
            result += c == '\'' ? std::string("'\\''") : std::string(1, c);
        else if (quote == '"' && isOneOf(c, "\"$`\\"))
            result += std::string("\\") + c;
        else if (quote == 0 && !isalnum(static_cast<unsigned char>(c)) && !isOneOf(c, "/._-+,:@%"))
            result += std::string("\\") + c;
        else
            result += c;
    }
    return result;
}

std::string_view programName(std::string_view word)
{
    const size_t slash = word.rfind('/');
    return slash == std::string_view::npos ? word : word.substr(slash + 1);
}

bool spawn(const std::string& command, pid_t& child)
{
    const std::string root = deviceGetRoot().GetText();
    std::string text = shellCommand::mapped(command, root);
    std::vector<std::string> environment = shellCommand::environment(root);
    std::vector<char*> variables;
    for (std::string& entry : environment)
        variables.push_back(entry.data());
    variables.push_back(nullptr);
    char shell[] = "sh";
    char option[] = "-c";
    char* const arguments[] = {shell, option, text.data(), nullptr};
    const int error = posix_spawn(&child, "/bin/sh", nullptr, nullptr, arguments, variables.data());
    if (error != 0)
        nuxTrace(TRACE_NOTE, "\"%s\" cannot be run: %s", command.c_str(), strerror(error));
    return error == 0;
}

} // namespace

std::string shellCommand::mapped(const std::string& command, const std::string& root)
{
    if (root.empty())
        return command;
    std::string result;
    char quote = 0;
    bool wordStart = true;
    for (size_t i = 0; i < command.size(); ++i) {
        const char c = command[i];
        if (c == '/' && wordStart && startsDevicePath(std::string_view(command).substr(i)))
            result += quotedFor(quote, root);
        wordStart = isOneOf(c, kWordBreaks);
        if (c == '\\' && quote != '\'' && i + 1 < command.size()) {
            result += c;
            result += command[++i];
            continue;
        }
        if (quote == 0 && isOneOf(c, "'\""))
            quote = c;
        else if (c == quote)
            quote = 0;
        result += c;
    }
    return result;
}

std::vector<std::string> shellCommand::environment(const std::string& root)
{
    std::vector<std::string> result;
    for (char** entry = environ; *entry; ++entry) {
        if (strncmp(*entry, "HX_SYSROOT=", 11) != 0)
            result.emplace_back(*entry);
    }
    result.push_back("HX_SYSROOT=" + root);
    return result;
}

bool shellCommand::stopsMachine(const std::string& command)
{
    std::string_view rest = command;
    while (!rest.empty()) {
        const size_t first = std::min(rest.find_first_not_of(" \t\n;|&("), rest.size());
        rest.remove_prefix(first);
        const std::string_view word = rest.substr(0, rest.find_first_of(kWordBreaks));
        const std::string_view name = programName(word);
        if (std::find(std::begin(kStopPrograms), std::end(kStopPrograms), name) != std::end(kStopPrograms))
            return true;
        const size_t next = rest.find_first_of(kCommandBreaks);
        if (next == std::string_view::npos)
            return false;
        rest.remove_prefix(next + 1);
    }
    return false;
}

int shellCommand::run(const std::string& command)
{
    pid_t child;
    if (!spawn(command, child))
        return -1;
    int status = 0;
    pid_t done;
    do
        done = waitpid(child, &status, 0);
    while (done < 0 && errno == EINTR);
    return done == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool shellCommand::start(const std::string& command)
{
    // A shell of its own waits for it, so that it leaves no dead process behind.
    return run("(" + command + ") </dev/null >/dev/null 2>&1 &") == 0;
}
