#pragma once
// Who may register: a line "USER PASSWORD NAME" each; the name may have blanks, a line with "#" is a remark.
#include <map>
#include <string>

struct tagPbxAccount
{
    std::string user;
    std::string password;
    std::string name;
};

class AccountBook
{
public:
    enum : size_t { MAX_ACCOUNTS = 100, MAX_LINE = 256 };

    // False with a reason for a person when there is no such file, or a line is none.
    bool load(const std::string& path, std::string& reason);
    // Others of this machine can read that file, with its passwords.
    static bool isOpenToOthers(const std::string& path);
    // Null for nobody.
    const tagPbxAccount* find(const std::string& user) const;
    const std::map<std::string, tagPbxAccount>& all() const { return m_accounts; }

private:
    bool take(const std::string& line, std::string& reason);

    std::map<std::string, tagPbxAccount> m_accounts;
};
