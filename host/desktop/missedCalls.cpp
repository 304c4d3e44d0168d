#include "host/desktop/missedCalls.h"
#include "host/services/phone/phoneService.h"
#include "support/host/registry.h"
#include "support/host/task.h"
#include <QMutex>

namespace {

const char* const kFile = "/rundata/config/user/user.ini";
const char* const kSection = "CallHistory";
const char* const kKey = "nMissed";

class StoreAction : public taskAction
{
public:
    int exec() override
    {
        // The count that is stored last is the newest, and none gives way to one that a slow disk keeps.
        static QMutex oneAtATime;
        const QMutexLocker lock(&oneAtATime);
        nuxSetRegistryInt(kFile, kSection, kKey, missedCalls::instance().count());
        return 1;
    }
};

} // namespace

missedCalls& missedCalls::instance()
{
    static missedCalls* calls = new missedCalls;
    return *calls;
}

missedCalls::missedCalls()
{
    m_nCount = qBound(0, nuxGetRegistryInt(kFile, kSection, kKey, 0), int(COUNT_MAX));
    phoneService::instance().addCallListener([this](const tagCall& call) {
        if (call.eState == CALL_ENDED && call.bIncoming && callIsMissed(call))
            setCount(qMin(count() + 1, int(COUNT_MAX)));
    });
}

void missedCalls::clear()
{
    setCount(0);
}

void missedCalls::setCount(int count)
{
    if (count == m_nCount)
        return;
    m_nCount = count;
    auto* action = new StoreAction;
    action->AddRef();
    action->SetCreatFlag(1);
    PostAction(*action);
    action->DestroyObject();
    emit changed();
}
