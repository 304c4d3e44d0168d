#include "tests/text/errorLines.h"

#include <gtest/gtest.h>

TEST(Error, GoesToTheSinkWithItsFileAndLine)
{
    errorLines errors;
    nuxErrorMessage(false, "frame/page.cpp", 42, "pNode != NULL");
    ASSERT_EQ(errorLines::Lines().size(), 1u);
    EXPECT_EQ(errorLines::Lines()[0], "frame/page.cpp:42: pNode != NULL");
}

TEST(Error, IsNotReportedWhenTheConditionHolds)
{
    errorLines errors;
    nuxErrorMessage(true, "frame/page.cpp", 42, "pNode != NULL");
    EXPECT_TRUE(errorLines::Lines().empty());
}

TEST(Error, GoesToTheStandardErrorOutputByDefault)
{
    nuxSetErrorSink(nullptr);
    testing::internal::CaptureStderr();
    nuxErrorMessage(false, "a.cpp", 7, "pObjects != NULL");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a.cpp:7: pObjects != NULL\n");
}

TEST(Error, AssertionReportsAndGoesOnWithItsValue)
{
    errorLines errors;
    EXPECT_TRUE(NUX_ASSERT(1 + 1 == 2, "sum"));
    EXPECT_TRUE(errorLines::Lines().empty());
    EXPECT_FALSE(NUX_ASSERT(1 + 1 == 3, "sum"));
    const int line = __LINE__ - 1;
    ASSERT_EQ(errorLines::Lines().size(), 1u);
    EXPECT_EQ(errorLines::Lines()[0], std::string(__FILE__) + ":" + std::to_string(line) + ": sum");
}

TEST(Error, SurvivesNullTextsAndCutsLongOnes)
{
    errorLines errors;
    nuxErrorMessage(false, nullptr, 1, nullptr);
    nuxErrorMessage(false, "a.cpp", 1, std::string(5000, 'x').c_str());
    ASSERT_EQ(errorLines::Lines().size(), 2u);
    EXPECT_EQ(errorLines::Lines()[0], ":1: ");
    EXPECT_EQ(errorLines::Lines()[1].size(), 511u);
}
