#include "tests/services/ownNames.h"
#include <QHash>
#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>

using ownNames::Answer;

namespace {

struct tagNames
{
    std::mutex lock;
    std::condition_variable changed;
    QHash<QByteArray, QList<Answer>> answers;
    bool isHeld = false;
    int waiting = 0;
};

tagNames& names()
{
    static tagNames* known = new tagNames; // threads may outlive the program's end
    return *known;
}

Answer take(const QByteArray& name)
{
    std::unique_lock<std::mutex> guard(names().lock);
    const auto found = names().answers.find(name);
    if (found == names().answers.end())
        return Answer();
    const Answer answer = found->size() > 1 ? found->takeFirst() : found->first();
    ++names().waiting;
    names().changed.wait(guard, [] { return !names().isHeld; });
    --names().waiting;
    names().changed.notify_all();
    return answer;
}

} // namespace

void ownNames::set(const QByteArray& name, const QList<Answer>& answers)
{
    const std::lock_guard<std::mutex> guard(names().lock);
    names().answers[name] = answers;
}

ownNames::HeldLookUps::HeldLookUps()
{
    const std::lock_guard<std::mutex> guard(names().lock);
    names().isHeld = true;
}

ownNames::HeldLookUps::~HeldLookUps()
{
    std::unique_lock<std::mutex> guard(names().lock);
    names().isHeld = false;
    names().changed.notify_all();
    names().changed.wait(guard, [] { return names().waiting == 0; });
}

int ownNames::HeldLookUps::waiting() const
{
    const std::lock_guard<std::mutex> guard(names().lock);
    return names().waiting;
}

// In place of the system's, for the whole program.
extern "C" Q_DECL_EXPORT int getaddrinfo(const char* name, const char* service, const addrinfo* hints,
                                         addrinfo** result)
{
    using Lookup = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const Lookup system = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "getaddrinfo"));
    const Answer answer = name ? take(name) : Answer();
    if (answer.isEmpty())
        return system(name, service, hints, result);
    for (const QByteArray& address : answer) {
        *result = nullptr;
        if (const int failure = system(address.constData(), service, hints, result))
            return failure;
        while (*result)
            result = &(*result)->ai_next;
    }
    return 0;
}
