#include "tests/desktop/callScreenStand.h"
#include "host/desktop/callAction.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/message.h"
#include "support/host/registry.h"

CallScreenStand::CallScreenStand()
{
    nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEnable", "1");
    nuxSetRegistryString("/rundata/config/user/user.ini", "CallWaiting", "bEffectPstn", "1");
    msgBroadpostThreadMsg(CONFIG_MSG_BCAST_CHANGED, CONFIG_CHANGED_CALL_WAITING, 0);
    callScreenInstall();
    below.setGeometry(0, 0, 800, 480);
    below.show();
    kit::stepTime(2000); // the call of the test before is no longer told
}

frmCall* CallScreenStand::screen()
{
    return qobject_cast<frmCall*>(kit::windows().value(0));
}

frmDial* CallScreenStand::dial()
{
    return qobject_cast<frmDial*>(kit::windows().value(0));
}

QWidget* CallScreenStand::child(const char* name)
{
    return screen()->findChild<QWidget*>(name);
}

callAction* CallScreenStand::action(const char* name)
{
    return screen()->findChild<callAction*>(name);
}

std::string CallScreenStand::text(const char* label)
{
    return labelText(screen(), label);
}

QList<tagCall> CallScreenStand::calls()
{
    return phoneService::instance().calls();
}

tagCall CallScreenStand::call(const char* number)
{
    for (const tagCall& call : calls()) {
        if (call.strNumber == number)
            return call;
    }
    return {};
}

int CallScreenStand::comesIn(const char* number, const char* name, int line)
{
    EXPECT_TRUE(phoneSimulation::instance()->ring(number, line, name)) << number;
    kit::settle();
    EXPECT_NE(screen(), nullptr) << number;
    return call(number).nId;
}

int CallScreenStand::ring(const char* number, const char* name, int line)
{
    const int id = comesIn(number, name, line);
    letPressesCount();
    return id;
}

int CallScreenStand::talk(const char* number, const char* name, int line)
{
    const int id = ring(number, name, line);
    kit::key(Qt::Key_Return);
    letPressesCount();
    EXPECT_EQ(call(number).eState, CALL_TALKING) << number;
    return id;
}
