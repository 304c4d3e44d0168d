#include "tests/frame/frameTest.h"
#include "support/host/registry.h"

void FrameTest::writeKey(const char* file, const char* section, const char* key, const char* value)
{
    ASSERT_EQ(nuxSetRegistryString(file, section, key, value), 1);
}
