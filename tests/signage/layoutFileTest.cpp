// What is taken of a layout file, sound or damaged.
#include "signage/mediaImage.h"
#include "signage/mediaText.h"
#include "signage/mediaVideo.h"
#include "tests/signage/displayFixture.h"

class LayoutFile : public DisplayTest
{
protected:
    bool load(const QByteArray& xml)
    {
        return m_layout.SetLayoutContent("a.xml", xml.constData(), "md5") != 0;
    }
    const nDeckRegion& region(int index = 0) const
    {
        auto it = m_layout.GetRegions().begin();
        while (index--)
            ++it;
        return *it;
    }
    template <class T>
    const T& media(int index = 0) const
    {
        auto it = region().begin();
        while (index--)
            ++it;
        const T* found = dynamic_cast<const T*>(*it);
        EXPECT_NE(found, nullptr);
        return *found;
    }
    QString html(const QByteArray& attributes)
    {
        EXPECT_TRUE(load(layout(DisplayTest::region(text("<b>hi</b>", "5", attributes.constData())))));
        return toQString(media<mediaText>().GetHtmlContent());
    }

    nDeckLayout m_layout;
};

TEST_F(LayoutFile, HoldsItsAttributesAndRegionsInOrder)
{
    mark();
    EXPECT_TRUE(load("<layout background=\"sky.png\" bgcolor=\"red\" width=\"800\" height=\"480\">"
                     "<region left=\"10\" top=\"20\" width=\"300\" height=\"200\">"
                     "<media type=\"image\" path=\"a.png\" duration=\"5\" phoneNum=\"123\"/></region>"
                     "<note/><region left=\"400\"/></layout>"));
    EXPECT_EQ(toQString(m_layout.GetName()), "a.xml");
    EXPECT_EQ(toQString(m_layout.GetMd5()), "md5");
    EXPECT_EQ(toQString(m_layout.GetBackground()), "sky.png");
    EXPECT_EQ(toQString(m_layout.GetBgColor()), "red");
    EXPECT_EQ(m_layout.GetSize().cx, 800);
    EXPECT_EQ(m_layout.GetSize().cy, 480);
    ASSERT_EQ(m_layout.GetRegions().size(), 2);
    EXPECT_EQ(region(0).GetRegionRect(), chRect(10, 20, 310, 220));
    EXPECT_EQ(region(1).GetRegionRect(), chRect(400, 0, 400, 0));
    EXPECT_TRUE(traced("nDeckRegion::SetRegionByXML(10,20,300,200)"));
    EXPECT_TRUE(traced("nDeckRegion::SetRegionByXML(400,0,0,0)"));
    EXPECT_EQ(toQString(media<mediaImage>().GetPhoneNumber()), "123");
    EXPECT_EQ(toQString(media<mediaImage>().GetUrl()), "");
}

TEST_F(LayoutFile, EmptyOneHasNoRegionsAndNoDuration)
{
    EXPECT_FALSE(load(""));
    EXPECT_EQ(m_layout.GetRegions().size(), 0);
    EXPECT_EQ(m_layout.GetLayoutDuration(), -1);
    EXPECT_EQ(toQString(m_layout.GetName()), "a.xml");
}

TEST_F(LayoutFile, KnowsThreeKindsOfMediaAndDropsAllOthers)
{
    EXPECT_TRUE(
        load(layout(DisplayTest::region("<media type=\"web\" duration=\"50\"/><media/><other/>" +
                                        image("a.png", "1") + video("b.mp4", "2") + text("c", "3")))));
    ASSERT_EQ(region().size(), 3);
    EXPECT_EQ(media<mediaImage>(0).GetMediaType(), 2);
    EXPECT_EQ(toQString(media<mediaImage>(0).GetImageFileName()), "a.png");
    EXPECT_EQ(media<mediaVideo>(1).GetMediaType(), 4);
    EXPECT_EQ(toQString(media<mediaVideo>(1).GetVideoFileName()), "b.mp4");
    EXPECT_EQ(media<mediaText>(2).GetMediaType(), 1);
    EXPECT_EQ(toQString(media<mediaText>(2).GetHtmlContent()), "c");
    EXPECT_EQ(region().GetRegionDuration(), 6000);
}

TEST_F(LayoutFile, DurationIsInSecondsDecimalOrHexadecimal)
{
    EXPECT_TRUE(load(
        layout(DisplayTest::region(image("a.png", "0x0A") + image("a.png", "0X10") + image("a.png", "10") +
                                   image("a.png", "ten") + image("a.png", "99999999999")))));
    EXPECT_EQ(media<mediaImage>(0).GetDuration(), 10000);
    EXPECT_EQ(media<mediaImage>(1).GetDuration(), 16000);
    EXPECT_EQ(media<mediaImage>(2).GetDuration(), 10000);
    EXPECT_EQ(media<mediaImage>(3).GetDuration(), 0);
    EXPECT_EQ(media<mediaImage>(4).GetDuration(), 2147483000);
}

TEST_F(LayoutFile, LastsAsLongAsItsLongestRegion)
{
    EXPECT_TRUE(load(layout(DisplayTest::region(image("a.png", "3") + image("b.png", "4")) +
                            DisplayTest::region(image("c.png", "5")))));
    EXPECT_EQ(m_layout.GetLayoutDuration(), 7000);
}

TEST_F(LayoutFile, StillTextHasNoMarquee)
{
    EXPECT_EQ(html("direction=\"none\" scrollamount=\"3\""), "<b>hi</b>");
}

TEST_F(LayoutFile, TextWithoutADirectionHasNoMarquee)
{
    EXPECT_EQ(html("scrollamount=\"3\""), "<b>hi</b>");
}

TEST_F(LayoutFile, RunningTextIsWrappedWithoutQuotes)
{
    EXPECT_EQ(html("direction=\"left\" scrollamount=\"3\""),
              "<marquee direction=left scrollamount=3 height=\"100%\"><b>hi</b></marquee>");
}

TEST_F(LayoutFile, TextThatIsNoDataIsEmpty)
{
    EXPECT_TRUE(load(layout(DisplayTest::region("<media type=\"text\"><text>plain</text></media>"))));
    EXPECT_EQ(toQString(media<mediaText>().GetHtmlContent()), "");
}

TEST_F(LayoutFile, FileNameThatLeadsOutOfTheFolderIsNone)
{
    EXPECT_TRUE(
        load(layout(DisplayTest::region(image("../config/system.ini", "1") + video("a/b.mp4", "1")))));
    EXPECT_EQ(toQString(media<mediaImage>(0).GetImageFileName()), "");
    EXPECT_EQ(toQString(media<mediaVideo>(1).GetVideoFileName()), "");
}

TEST_F(LayoutFile, DamagedOneKeepsWhatStandsBeforeTheDamage)
{
    EXPECT_FALSE(
        load("<layout bgcolor=\"red\"><region left=\"1\">" + image("a.png", "5") + "</region><regi"));
    EXPECT_EQ(m_layout.GetRegions().size(), 1);
    EXPECT_EQ(m_layout.GetLayoutDuration(), 5000);
}

TEST_F(LayoutFile, RegionsAndMediaAreBounded)
{
    QByteArray xml;
    for (int i = 0; i < 300; ++i)
        xml += image("a.png", "1");
    xml = DisplayTest::region(xml);
    for (int i = 0; i < 300; ++i)
        xml += "<region/>";
    EXPECT_TRUE(load(layout(xml)));
    EXPECT_EQ(m_layout.GetRegions().size(), LAYOUT_REGION_LIMIT);
    EXPECT_EQ(region().size(), REGION_MEDIA_LIMIT);
}

TEST_F(LayoutFile, TextBeyondItsBoundIsDropped)
{
    const QByteArray most(REGION_TEXT_LIMIT, 'x');
    EXPECT_TRUE(
        load(layout(DisplayTest::region(text(most.constData(), "1") + text((most + "x").constData(), "1")))));
    EXPECT_EQ(media<mediaText>(0).GetHtmlContent().GetLength(), REGION_TEXT_LIMIT);
    EXPECT_TRUE(media<mediaText>(1).GetHtmlContent().IsEmpty());
}

TEST_F(LayoutFile, TooLargeOneHasNoRegions)
{
    addLayout("a.xml",
              layout(DisplayTest::region(image("a.png", "5")) + "<!--" + QByteArray(1 << 20, 'x') + "-->"));
    takeUp();
    EXPECT_EQ(display().GetCurrentLayout()->GetRegions().size(), 0);
}

TEST_F(LayoutFile, HugeAndNegativeRectanglesAreCut)
{
    const char* const huge = "99999999999999999999";
    EXPECT_TRUE(load(QByteArray("<layout><region left=\"") + huge + "\" top=\"-" + huge + "\" width=\"" +
                     huge + "\" height=\"" + huge +
                     "\"/><region left=\"-5\" top=\"7\" width=\"-5\" height=\"-1\"/></layout>"));
    EXPECT_EQ(region(0).GetRegionRect(),
              chRect(REGION_OFFSET_LIMIT, -REGION_OFFSET_LIMIT, REGION_OFFSET_LIMIT + REGION_WIDTH_LIMIT,
                     -REGION_OFFSET_LIMIT + REGION_HEIGHT_LIMIT));
    EXPECT_EQ(region(1).GetRegionRect(), chRect(-5, 7, -5, 7));
}

TEST_F(LayoutFile, HugeRectangleIsShownAsFarAsItReachesIntoTheFrame)
{
    addFile("red.png", picture(Qt::red));
    addLayout("a.xml", layout(DisplayTest::region(QRect(-1000, -500, 2000, 1200), image("red.png", "5"))));
    takeUp();
    show();
    EXPECT_EQ(pixel(700, 400), qRgb(255, 0, 0));
}
