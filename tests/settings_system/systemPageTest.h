#pragma once
// What the tests of the system settings share: the room's pages.
#include "settings/system/systemPages.h"
#include "support/host/module.h"
#include "support/host/text.h"
#include "tests/kit/pageTest.h"

#define SYSTEM_FILE "/rundata/config/system.ini"

class SystemPageTest : public PageTest
{
protected:
    SystemPageTest() { settingsSystemPages(); }
};
