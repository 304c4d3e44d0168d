#include "registrar/accountBook.h"
#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace {

// What stands in an address as it is.
bool isUser(const std::string& user)
{
    return !user.empty() && std::all_of(user.begin(), user.end(), [](unsigned char c) {
        return isalnum(c) || c == '.' || c == '-' || c == '_' || c == '*' || c == '+';
    });
}

bool isPrinted(const std::string& text)
{
    return std::none_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x20 || c == 0x7f; });
}

} // namespace

bool AccountBook::load(const std::string& path, std::string& reason)
{
    std::ifstream file(path);
    if (!file) {
        reason = "cannot read " + path;
        return false;
    }
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line[0] == '#')
            continue;
        if (!take(line, reason)) {
            reason = path + ", line " + std::to_string(number) + ": " + reason;
            return false;
        }
    }
    if (m_accounts.empty())
        reason = path + " has no account";
    return !m_accounts.empty();
}

bool AccountBook::take(const std::string& line, std::string& reason)
{
    std::istringstream words(line);
    tagPbxAccount account;
    words >> account.user >> account.password >> std::ws;
    std::getline(words, account.name);
    if (line.size() > MAX_LINE || !isPrinted(line))
        reason = "too long, or with control characters";
    else if (!isUser(account.user) || account.password.empty())
        reason = "a user and a password are wanted";
    else if (m_accounts.count(account.user))
        reason = "the user is there already";
    else if (m_accounts.size() == MAX_ACCOUNTS)
        reason = "too many accounts";
    else
        m_accounts[account.user] = account;
    return reason.empty();
}

bool AccountBook::isOpenToOthers(const std::string& path)
{
    struct stat file = {};
    return stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) &&
           (file.st_mode & (S_IRGRP | S_IROTH)) != 0;
}

const tagPbxAccount* AccountBook::find(const std::string& user) const
{
    const auto found = m_accounts.find(user);
    return found == m_accounts.end() ? nullptr : &found->second;
}
