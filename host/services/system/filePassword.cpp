#include "host/services/system/hashCost.h"
#include "support/file/atomicSave.h"
#include "support/file/chDiskWork.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include "support/host/password.h"
#include "support/host/trace.h"
#include <QByteArray>
#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <crypt.h>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

// The file has a line for each user: the name, percent-encoded, a colon, and the hash of the password.
constexpr size_t kFileLimit = 1 << 20;
constexpr int kEndingMs = 200; // for the last hash of a phone that ends
const char* const kFirstUser = "admin";
const char* const kMethod = "$y$"; // yescrypt

// A hash of the same cost as those in the file, for a name that is in none, so that the time of a check does
// not tell which names there are. No password gives it.
const char* const kNobodysHash = "$y$j9T$LN0q1vAU0nBUAqc3bDRkz/$...........................................";

struct User
{
    std::string name;
    std::string hash; // empty: the password is empty, and was never set
    bool isBounded() const { return hash.empty() || hashCostIsBounded(hash); }
};

struct HashWork
{
    std::string password, setting, hash;
};

std::string hashed(const char* password, const char* setting)
{
    const auto data = std::make_unique<crypt_data>();
    const char* hash = crypt_r(password, setting, data.get());
    std::string result = hash && hash[0] == '$' ? hash : "";
    explicit_bzero(data.get(), sizeof(crypt_data));
    return result;
}

// Longer than a frame: the thread of the user interface goes on meanwhile. Empty when the phone ends first.
std::string hashedAside(const char* password, const char* setting)
{
    const QCoreApplication* application = QCoreApplication::instance();
    if (!application || QThread::currentThread() != application->thread())
        return hashed(password, setting);
    const auto job = std::make_shared<HashWork>(HashWork{password, setting, {}});
    QEventLoop loop; // ends with the application too
    chDiskWork work([job] {
        job->hash = hashed(job->password.c_str(), job->setting.c_str());
        explicit_bzero(job->password.data(), job->password.size());
        return 1;
    });
    work.Tell([&loop] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
    loop.exec();
    return work.Wait(kEndingMs) ? job->hash : std::string();
}

std::string newHash(const char* password)
{
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (!crypt_gensalt_rn(kMethod, 0, nullptr, 0, setting, sizeof setting))
        return std::string();
    return hashedAside(password, setting);
}

bool sameInConstantTime(const std::string& left, const std::string& right)
{
    unsigned difference = left.size() == right.size() ? 0 : 1;
    for (size_t i = 0; i < left.size(); ++i)
        difference |= static_cast<unsigned char>(left[i] ^ right[right.empty() ? 0 : i % right.size()]);
    return difference == 0;
}

std::string encoded(const std::string& name)
{
    const QByteArray bytes(name.data(), static_cast<qsizetype>(name.size()));
    return bytes.toPercentEncoding().toStdString();
}

std::string decoded(std::string_view text)
{
    return QByteArray::fromPercentEncoding(QByteArray(text.data(), static_cast<qsizetype>(text.size())))
        .toStdString();
}

// False for a line that is none of a password file.
bool readUser(std::string_view line, std::vector<User>& users)
{
    const size_t colon = line.find(':');
    if (colon == std::string_view::npos || line.size() < colon + 2 || line[colon + 1] != '$')
        return false;
    users.push_back({decoded(line.substr(0, colon)), std::string(line.substr(colon + 1))});
    return line.find('\0') == std::string_view::npos;
}

bool readUsers(std::string_view text, std::vector<User>& users)
{
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!line.empty() && line[0] != '#' && !readUser(line, users))
            return false;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return !users.empty();
}

} // namespace

struct filePassword::Private
{
    void Load(const char* file);
    const User* Find(const char* name) const;

    std::string path;
    bool broken = false; // it was read, and is damaged
    bool unread = false; // it is there, but could not be read
    std::vector<User> users;
};

void filePassword::Private::Load(const char* file)
{
    path = file ? file : "";
    std::string text;
    const FILE_READ read = fileRead(file, text, kFileLimit);
    if (read == FILE_READ_MISSING) {
        users.push_back({kFirstUser, std::string()});
        return;
    }
    unread = read == FILE_READ_FAILED;
    broken = !unread && (read != FILE_READ_DONE || !readUsers(text, users));
    for (const User& user : users) {
        if (!user.isBounded())
            nuxTrace(TRACE_NOTE,
                     "The password file %s has a hash that costs too much for \"%s\": it lets nobody in",
                     file, user.name.c_str());
    }
    if (!broken && !unread)
        return;
    // Nobody gets in by a file that was damaged.
    users.clear();
    nuxTrace(TRACE_NOTE, "The password file %s cannot be %s", file, unread ? "read" : "understood");
}

const User* filePassword::Private::Find(const char* name) const
{
    for (const User& user : users) {
        if (user.name == name)
            return &user;
    }
    return nullptr;
}

filePassword::filePassword(const char* path) : m_p(new Private)
{
    m_p->Load(path);
}

filePassword::~filePassword()
{
    delete m_p;
}

int filePassword::IsRightUserPassword(const char* user, const char* password) const
{
    const User* known = user ? m_p->Find(user) : nullptr;
    const bool hasHash = known && !known->hash.empty() && known->isBounded();
    const std::string expected = hasHash ? known->hash : kNobodysHash;
    const std::string given = hashedAside(password ? password : "", expected.c_str());
    const bool isSame = sameInConstantTime(expected, given);
    const bool isFirst = known && known->hash.empty() && password && *password == 0;
    return known && password && (isSame || isFirst) ? 1 : 0;
}

int filePassword::SetUserPassword(const char* user, const char* password)
{
    const std::string hash = user && *user && password ? newHash(password) : std::string();
    if (hash.empty())
        return 0;
    for (User& known : m_p->users) {
        if (known.name == user) {
            known.hash = hash;
            return 1;
        }
    }
    m_p->users.push_back({user, hash});
    return 1;
}

int filePassword::SaveToFile(const char* path) const
{
    std::string text;
    for (const User& user : m_p->users) {
        const std::string hash = user.hash.empty() ? newHash("") : user.hash;
        if (hash.empty())
            return 0;
        text += encoded(user.name) + ':' + hash + '\n';
    }
    if (text.empty() || !path)
        return 0;
    chString kept;
    const bool isOwn = m_p->path == path;
    // The users that could not be read are still in it.
    if (isOwn && m_p->unread)
        return 0;
    const bool broken = isOwn && m_p->broken && pathFileExist(path);
    if (broken && !fileCopyAside(path, kept))
        return 0;
    if (fileSaveAtomic(path, text.data(), text.size(), 0600))
        return 1;
    if (broken)
        fileRemove(kept);
    return 0;
}
