// Thousands of damaged replies and lists, one after the other: whatever comes of one, it is a quote within
// its bounds or none at all, and a reply that is whole reads as ever.
#include "applets/feed.h"
#include "applets/stockList.h"
#include "tests/applets_stock/stockTest.h"
#include "tests/kit/plain/damage.h"

namespace {

#define WHOLE "/rundata/data/X-whole.xml"
#define DAMAGED "/rundata/data/X-damaged.xml"

constexpr int kLetters = 200;
constexpr int kAdded = 2;     // signs, slashes and a blank that the phone puts in: of a percentage, of a date
constexpr int kReadable = 10; // one of so many at least
constexpr int kSaves = 20;    // one list of so many is stored again

using Harmed = kit::Damage::tagHarmed;
using Reader = bool (CStockLogic::*)(tagCStockInfo& info, const chString& file) const;

bool isSigned(const chString& text)
{
    return *text.GetText() == '-' || *text.GetText() == '+';
}

class DamagedStock : public StockTest
{
protected:
    static QByteArray serverReply()
    {
        QByteArray reply = "<norvane><ndeck><RootMenu>";
        int value = 100;
        for (const char* title : S_STOCK_MAP)
            reply +=
                QByteArray("<Menu title=\"") + title + "\" value=\"" + QByteArray::number(++value) + ".5\"/>";
        return reply.replace("value=\"103.5", "value=\"+103.5") + "</RootMenu></ndeck></norvane>";
    }
    static void expectBounds(tagCStockInfo& info, const QByteArray& reply)
    {
        ASSERT_LE(reply.size(), FEED_ANSWER_LIMIT);
        for (const chString* field : fieldsOf(info)) {
            ASSERT_LE(field->GetLength(), 2 * reply.size());
            const QString shown = feedShownText(toQString(*field), kLetters);
            ASSERT_LE(shown.size(), kLetters);
            ASSERT_TRUE(shown.isValidUtf16());
            for (const QChar letter : shown)
                ASSERT_TRUE(letter.category() != QChar::Other_Control &&
                            letter.category() != QChar::Other_Format);
        }
    }
    static void expectPublicQuote(tagCStockInfo& info, const QByteArray& reply)
    {
        for (const chString* field : fieldsOf(info)) {
            ASSERT_FALSE(field->IsEmpty());
            ASSERT_LE(field->GetLength(), reply.size() + kAdded);
        }
        ASSERT_TRUE(info.strPercChange == STOCK_NO_VALUE || toQString(info.strPercChange).endsWith('%'));
    }
    static void expectServerQuote(tagCStockInfo& info, const QByteArray&)
    {
        ASSERT_TRUE(toQString(info.strUpdated).contains(' '));
        ASSERT_TRUE(isSigned(info.strPercChange) || !isSigned(info.strChange));
    }
    using Expect = void (*)(tagCStockInfo& info, const QByteArray& reply);

    static int changes(tagCStockInfo& left, tagCStockInfo& right)
    {
        int count = 0;
        const auto fields = fieldsOf(left), others = fieldsOf(right);
        for (size_t i = 0; i < fields.size(); ++i)
            count += *fields[i] != *others[i];
        return count;
    }
    void expect(Reader read, const Harmed& reply, tagCStockInfo& whole, Expect expectQuote)
    {
        tagCStockInfo info;
        const bool isGood = (logic.*read)(info, DAMAGED);
        // What does not end was not sent to its end.
        ASSERT_FALSE(isGood && reply.isOnly(kit::Harm::Cut));
        ASSERT_TRUE(isGood || !reply.isOnly(kit::Harm::Number));
        if (!isGood)
            return;
        ++quotes;
        ASSERT_NO_FATAL_FAILURE(expectBounds(info, reply.text));
        ASSERT_NO_FATAL_FAILURE(expectQuote(info, reply.text));
        ASSERT_TRUE(!reply.isOnly(kit::Harm::Number) || changes(info, whole) <= 1);
    }
    void harm(Reader read, const QByteArray& reply, Expect expectQuote)
    {
        writeFile(WHOLE, reply);
        tagCStockInfo whole;
        ASSERT_TRUE((logic.*read)(whole, WHOLE));
        for (int i = 0; i < kit::Damage::count() && !HasFatalFailure(); ++i) {
            const Harmed harmed = damage.harmed(reply);
            ASSERT_TRUE(kit::Damage::write(hostPath(DAMAGED), harmed.text));
            expect(read, harmed, whole, expectQuote);
            EXPECT_FALSE(HasFatalFailure()) << "reply " << i << ":\n" << harmed.text.left(4000).constData();
            tagCStockInfo again;
            ASSERT_TRUE((logic.*read)(again, WHOLE));
            ASSERT_TRUE(again == whole);
        }
        // Most harms lead only so far as to the first tag that is none.
        EXPECT_TRUE(HasFailure() || quotes > kit::Damage::count() / kReadable) << quotes;
    }
    static void expectList(const Harmed& list, bool isSaved)
    {
        QStringList codes;
        if (!stockListRead(codes)) {
            ASSERT_EQ(stockListCount(), int(STOCK_COUNT_LIMIT));
            ASSERT_FALSE(list.isOnly(kit::Harm::Number));
            return;
        }
        ASSERT_FALSE(list.isOnly(kit::Harm::Cut));
        ASSERT_LE(list.text.size(), qsizetype(STOCK_DATA_LIMIT));
        ASSERT_EQ(stockListCount(), codes.size());
        ASSERT_FALSE(codes.contains(QString()));
        if (!isSaved)
            return;
        ASSERT_NE(stockListSave(codes), STOCK_LIST_FULL);
        QStringList again;
        ASSERT_TRUE(stockListRead(again));
        ASSERT_EQ(again, codes);
    }

    kit::Damage damage;
    CStockLogic logic;
    int quotes = 0; // that were read of damaged replies
};

} // namespace

TEST_F(DamagedStock, OfThePublicFeedIsAQuoteWithinItsBoundsOrNone)
{
    harm(&CStockLogic::XmlPhraseToStockInfoByGoogle, quote("Harbour House"), &expectPublicQuote);
}

TEST_F(DamagedStock, OfTheSignageServerIsAQuoteWithinItsBoundsOrNone)
{
    harm(&CStockLogic::XmlPhraseToStockInfoByNdeck, serverReply(), &expectServerQuote);
}

TEST_F(DamagedStock, ListOfCodesIsReadWholeOrNotAtAll)
{
    const QStringList codes = {"HRBR", "NRV1", "TIDE", "A&B", "\"7\"", "QUAY", "0700", "ANVL", "ARCA", "X.9"};
    writeList(codes);
    const QByteArray whole =
        readFile(STOCK_DATA_XML).replace("&B", "&amp;B").replace("\"\"7\"\"", "\"&quot;7&quot;\"");
    for (int i = 0; i < kit::Damage::count() && !HasFatalFailure(); ++i) {
        const Harmed list = damage.harmed(whole);
        ASSERT_TRUE(kit::Damage::write(hostPath(STOCK_DATA_XML), list.text));
        expectList(list, i % kSaves == 0);
        EXPECT_FALSE(HasFatalFailure()) << "list " << i << ":\n" << list.text.left(4000).constData();
        ASSERT_TRUE(kit::Damage::write(hostPath(STOCK_DATA_XML), whole));
        QStringList again;
        ASSERT_TRUE(stockListRead(again));
        ASSERT_EQ(again, codes);
    }
}

TEST_F(DamagedStock, ListOfSourcesGivesAWholeAddressOrNone)
{
    const QByteArray whole =
        "<StockSource><s title=\"Other\" address=\"http://o:1/\"/>"
        "<s title=\"Google\" address=\"http://127.0.0.1:6090/ig/api?stock=\"/></StockSource>";
    writeFile(WHOLE, whole);
    for (int i = 0; i < kit::Damage::count() && !HasFailure(); ++i) {
        const Harmed list = damage.harmed(whole);
        ASSERT_TRUE(kit::Damage::write(hostPath(DAMAGED), list.text));
        chString address = "as before";
        const FEED_SOURCE found =
            feedSourceAddress(DAMAGED, "StockSource", nullptr, FEED_PUBLIC_TITLE, address);
        EXPECT_TRUE(found == FEED_SOURCE_FOUND || address == "as before");
        EXPECT_TRUE(!list.isOnly(kit::Harm::Cut) || found == FEED_SOURCE_NO_FILE);
        EXPECT_TRUE(!list.isOnly(kit::Harm::Number) || found == FEED_SOURCE_FOUND);
        EXPECT_FALSE(HasFailure()) << "list " << i << ":\n" << list.text.left(4000).constData();
        EXPECT_EQ(feedSourceAddress(WHOLE, "StockSource", nullptr, FEED_PUBLIC_TITLE, address),
                  FEED_SOURCE_FOUND);
        EXPECT_STREQ(address.GetText(), "http://127.0.0.1:6090/ig/api?stock=");
    }
}
