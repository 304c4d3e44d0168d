#include "host/screen/screenState.h"
#include "tests/widgets/screenPage.h"

namespace {

class Screen : public PhoneTest
{
protected:
    screenState& state = screenState::instance();
};

TEST_F(Screen, IdleTimeRunsFromTheLastTouchOrKey)
{
    ScreenPage page;
    page.open();
    kit::tap(QPoint(400, 240));
    kit::stepTime(5000);
    EXPECT_NEAR(state.idleMs(), 5000, 100);
    kit::key(Qt::Key_Down);
    EXPECT_LT(state.idleMs(), 200);
    kit::stepTime(3000);
    kit::tap(QPoint(400, 240));
    EXPECT_LT(state.idleMs(), 200);
}

TEST_F(Screen, TouchesAndKeysAreTold)
{
    ScreenPage page;
    page.open();
    int touched = 0;
    const auto connection = QObject::connect(&state, &screenState::touched, [&] { ++touched; });
    kit::key(Qt::Key_Down);
    EXPECT_EQ(touched, 1);
    kit::tap(QPoint(400, 240));
    QObject::disconnect(connection);
    EXPECT_GT(touched, 1);
}

TEST_F(Screen, IdleTimeThatWasSetEndsWithTheSuspension)
{
    state.setIdle(90000);
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    EXPECT_LT(state.idleMs(), 200);
}

TEST_F(Screen, ResetRestartsTheIdleTime)
{
    kit::stepTime(5000);
    int awake = 0;
    const auto connection = QObject::connect(&state, &screenState::awake, [&] { ++awake; });
    ResetScreenSavers(0, 0);
    EXPECT_GE(state.idleMs(), 5000);
    ResetScreenSavers(1, 0);
    QObject::disconnect(connection);
    EXPECT_LT(state.idleMs(), 200);
    EXPECT_EQ(awake, 1);
    EXPECT_EQ(logged("saver"), QStringList({"reset 0 0", "reset 1 0"}));
}

TEST_F(Screen, ClientsSuspendTheSaverUntilTheLastOneLetsGo)
{
    QList<bool> told;
    const auto connection = QObject::connect(&state, &screenState::saverSuspended,
                                             [&](bool suspended) { told.append(suspended); });
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    RegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
    kit::stepTime(60000);
    EXPECT_TRUE(state.isSaverSuspended());
    EXPECT_EQ(state.idleMs(), 0);
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    EXPECT_TRUE(state.isSaverSuspended());
    UnRegisterScreenSavers(SCREEN_SAVERS_MEETING, 0);
    EXPECT_FALSE(state.isSaverSuspended());
    EXPECT_LT(state.idleMs(), 200) << "the time starts anew";
    QObject::disconnect(connection);
    EXPECT_EQ(told, QList<bool>({true, false}));
    EXPECT_EQ(logged("saver"),
              QStringList({"register 5 0", "register 7 0", "unregister 5 0", "unregister 7 0"}));
}

TEST_F(Screen, ClientCountsOnceAndUnknownClientsAreHarmless)
{
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    RegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    UnRegisterScreenSavers(SCREEN_SAVERS_PLAYER, 0);
    EXPECT_FALSE(state.isSaverSuspended());
}

TEST_F(Screen, LampIsLitWhileThereIsAReason)
{
    QList<bool> told;
    const auto connection =
        QObject::connect(&state, &screenState::lampChanged, [&](bool lit) { told.append(lit); });
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    EXPECT_TRUE(state.isLampLit());
    UnRegisterSignalLamp(SIGNAL_LAMP_MEETING);
    EXPECT_FALSE(state.isLampLit());
    QObject::disconnect(connection);
    EXPECT_EQ(told, QList<bool>({true, false}));
    EXPECT_EQ(logged("lamp"), QStringList({"register 1", "register 1", "unregister 1"}));
}

TEST_F(Screen, LampOfMessagesIsNobodysToDarken)
{
    screenState& state = screenState::instance();
    QList<bool> told;
    const QMetaObject::Connection listener =
        QObject::connect(&state, &screenState::lampChanged, [&](bool lit) { told.append(lit); });
    state.setMessagesWait(true);
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    UnRegisterSignalLamp(SIGNAL_LAMP_OFF);
    EXPECT_TRUE(state.isLampLit());
    state.setMessagesWait(false);
    EXPECT_FALSE(state.isLampLit());
    EXPECT_EQ(told, (QList<bool>{true, false}));
    QObject::disconnect(listener);
}

TEST_F(Screen, LampOffTakesAllReasonsAway)
{
    RegisterSignalLamp(SIGNAL_LAMP_MEETING);
    UnRegisterSignalLamp(SIGNAL_LAMP_OFF);
    EXPECT_FALSE(state.isLampLit());
    RegisterSignalLamp(SIGNAL_LAMP_OFF);
    EXPECT_FALSE(state.isLampLit());
}

} // namespace
