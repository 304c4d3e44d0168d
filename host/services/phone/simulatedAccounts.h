#pragma once
// The lines of the simulated phone. Each registers as its file "/rundata/config/user/voip/sipAccount%d.cfg"
// says, a moment after it was read; what was set by hand stays as it was set. User-interface thread.
#include "host/services/phone/accountFiles.h"
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

// What the outside world sets by hand; what is absent stays as it is.
struct tagLineSetting
{
    std::optional<int> state; // LINE_STATE
    std::optional<QString> user;
    std::optional<QString> server;
    std::optional<QString> name;
    std::optional<int> newMessages;
    std::optional<int> oldMessages;
    std::optional<QString> whyNot; // why it could not be registered, an English key
};

class simulatedAccounts : public QObject
{
public:
    enum : int { REGISTER_MS = 800 };

    // changed: told the index of each account that changed.
    explicit simulatedAccounts(std::function<void(int)> changed);

    // Reads the files. An account whose settings are as before keeps its registration.
    void readFiles();
    void set(int index, const tagLineSetting& setting);
    tagAccountInfo info(int index) const;
    // -1 when none is registered.
    int defaultAccount() const;
    bool isRegistered(int index) const;

private:
    struct tagLine
    {
        tagAccountFile file;
        LINE_STATE eState = LINE_DISABLED; // by the configuration
        int nRegistration = 0;             // counts them: an old one's end is not this one's
        tagLineSetting byHand;
    };

    void apply(int index, const tagAccountFile& file);
    void beginRegistration(int index);
    LINE_STATE stateOf(int index) const;
    int firstRegistered() const;

    accountTeller m_teller;
    tagLine m_lines[PHONE_ACCOUNT_COUNT];
};
