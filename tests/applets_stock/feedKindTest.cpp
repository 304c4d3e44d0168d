// Which feed an applet asks.
#include "applets/feed.h"
#include "support/host/registry.h"
#include "tests/kit/phoneTest.h"

namespace {

class FeedKind : public PhoneTest
{
protected:
    static void configure(const char* file, const char* section, const char* key, const char* value)
    {
        nuxSetRegistryString(file, section, key, value);
    }
};

} // namespace

TEST_F(FeedKind, IsThePublicFeedWhereNothingIsStored)
{
    writeFile("/rundata/config/user/user.ini", "");
    EXPECT_EQ(feedKind("Stock"), FEED_KIND_PUBLIC);
}

TEST_F(FeedKind, IsThePublicFeedForItsNameOnly)
{
    configure("/rundata/config/user/user.ini", "Stock", "strSource", "Google");
    EXPECT_EQ(feedKind("Stock"), FEED_KIND_PUBLIC);
    for (const char* other : {"google", "Ndeck", ""}) {
        configure("/rundata/config/user/user.ini", "Stock", "strSource", other);
        EXPECT_EQ(feedKind("Stock"), FEED_KIND_NONE) << other;
    }
    EXPECT_EQ(feedKind("Weather"), FEED_KIND_PUBLIC) << "each section has its own";
}

TEST_F(FeedKind, IsTheSignageServerWhileSignageIsEnabledWhateverIsStored)
{
    configure("/rundata/config/user/user.ini", "Stock", "strSource", "none");
    configure("/rundata/config/system.ini", "nDeck", "bEnable", "1");
    EXPECT_EQ(feedKind("Stock"), FEED_KIND_SIGNAGE);
    configure("/rundata/config/system.ini", "nDeck", "bEnable", "0");
    EXPECT_EQ(feedKind("Stock"), FEED_KIND_NONE);
}

TEST_F(FeedKind, NamesTheSignageServerAndThisDisplayWithoutEscaping)
{
    for (const auto& [key, value] :
         {std::pair("strServerURL", "http://sign/"), std::pair("strServerKey", "k&y")})
        configure("/rundata/config/system.ini", "nDeck", key, value);
    const QByteArray found = feedServiceAddress("stock", "code", "A B#%").GetText();
    EXPECT_TRUE(found.startsWith("http://sign/service/stock.htm?&serverKey=k&y&hardwareKey="))
        << found.data();
    EXPECT_TRUE(found.endsWith("&version=2.0&language=en&code=A B#%")) << found.data();
}
