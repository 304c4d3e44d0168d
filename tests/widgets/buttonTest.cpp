#include "support/host/button.h"
#include "tests/widgets/screenPage.h"
#include <QPainter>

namespace {

class Buttons : public PhoneTest
{
protected:
    Buttons()
    {
        paint("/rundata/normal.png", Qt::red);
        paint("/rundata/pressed.png", Qt::green);
        paint("/rundata/disabled.png", Qt::gray);
        paint("/rundata/icon.png", Qt::blue, QSize(16, 16));
        button = CreateUIPushButton(QRect(300, 100, 120, 50), "btnTest", &page);
    }
    void paint(const char* path, Qt::GlobalColor colour, QSize size = QSize(40, 40))
    {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(colour);
        ASSERT_TRUE(image.save(hostPath(path)));
    }
    void setPictures()
    {
        SetButton3StatusImage(button, "/rundata/normal.png", "/rundata/pressed.png", "/rundata/disabled.png");
    }

    ScreenPage page;
    qUIPushButton* button;
    const QRgb red = 0xffff0000;
    const QRgb green = 0xff00ff00;
    const QRgb grey = 0xffa0a0a4;
};

TEST_F(Buttons, CreatedButtonHasItsNameRectangleAndParent)
{
    EXPECT_EQ(button->objectName(), "btnTest");
    EXPECT_EQ(button->geometry(), QRect(300, 100, 120, 50));
    EXPECT_EQ(button->parentWidget(), &page);
}

TEST_F(Buttons, PictureFollowsTheStateAndFillsTheButton)
{
    setPictures();
    page.open();
    button->clearFocus();
    EXPECT_TRUE(isColour(kit::screen(), 301, 101, red));
    EXPECT_TRUE(isColour(kit::screen(), 418, 148, red));
    kit::press(QPoint(350, 120));
    EXPECT_TRUE(isColour(kit::screen(), 310, 110, green));
    kit::release(QPoint(350, 120));
    EXPECT_TRUE(isColour(kit::screen(), 310, 110, red));
    button->setEnabled(false);
    EXPECT_TRUE(isColour(kit::screen(), 310, 110, grey));
}

TEST_F(Buttons, MissingPressedAndDisabledPicturesShowTheNormalOne)
{
    SetButton3StatusImage(button, "/rundata/normal.png", "/rundata/none.png", nullptr);
    page.open();
    button->setEnabled(false);
    EXPECT_TRUE(isColour(kit::screen(), 310, 110, red));
}

TEST_F(Buttons, PicturesAreToldAsTheyWereSet)
{
    setPictures();
    SetButtonIcon(button, "/rundata/icon.png");
    EXPECT_EQ(GetButtonImage(button, 0), "/rundata/normal.png");
    EXPECT_EQ(GetButtonImage(button, 1), "/rundata/pressed.png");
    EXPECT_EQ(GetButtonImage(button, 2), "/rundata/disabled.png");
    EXPECT_EQ(GetButtonImage(button, 3), "/rundata/icon.png");
    EXPECT_EQ(GetButtonImage(button, 4), "");
    EXPECT_EQ(GetButtonImage(nullptr, 0), "");
    EXPECT_EQ(GetButtonImage(page.add<QPushButton>(QRect()), 0), "");
}

TEST_F(Buttons, ChangedPicturesAreShownAtOnce)
{
    setPictures();
    page.open();
    button->clearFocus();
    SetButton3StatusImage(button, "/rundata/pressed.png", "/rundata/pressed.png", "/rundata/pressed.png");
    EXPECT_TRUE(isColour(kit::screen(), 310, 110, green));
}

TEST_F(Buttons, PicturesWorkOnAnyPushButton)
{
    QPushButton* plain = page.add<QPushButton>(QRect(300, 200, 120, 50));
    SetButton3StatusImage(plain, "/rundata/normal.png", "/rundata/pressed.png", "/rundata/disabled.png");
    page.open();
    EXPECT_TRUE(isColour(kit::screen(), 310, 210, red));
}

TEST_F(Buttons, PicturesStayWithAStyleSheetForTheTextColour)
{
    setPictures();
    button->setText("1234");
    button->setStyleSheet("QPushButton{color:rgb(255,255,0)}");
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 310, 110, red));
    int yellow = 0;
    for (int x = 320; x < 400; ++x) {
        for (int y = 110; y < 140; ++y)
            yellow += bool(isColour(screen, x, y, 0xffffff00, 30));
    }
    EXPECT_GT(yellow, 20);
}

TEST_F(Buttons, IconStandsAtTheLeftWithTheTextAfterIt)
{
    SetButtonIcon(button, "/rundata/icon.png");
    button->setText("Anna");
    button->setTextAlign(0x81);
    page.open();
    const QImage screen = kit::screen();
    EXPECT_TRUE(isColour(screen, 316, 125, 0xff0000ff));
    const QRect text = inkIn(screen, QRect(326, 105, 88, 40), look::kButton);
    EXPECT_GE(text.left(), 330);
    EXPECT_LE(text.left(), 336);
}

TEST_F(Buttons, TextAlignmentIsKeptAndUsed)
{
    button->setText("Anna");
    EXPECT_EQ(button->textAlign(), int(Qt::AlignCenter));
    page.open();
    const QRect middle = inkIn(kit::screen(), QRect(306, 105, 108, 40), look::kButton);
    EXPECT_NEAR(middle.center().x(), 360, 3);
    button->setTextAlign(0x81);
    EXPECT_EQ(button->textAlign(), 0x81);
    const QRect left = inkIn(kit::screen(), QRect(306, 105, 108, 40), look::kButton);
    EXPECT_LE(left.left(), 312);
}

TEST_F(Buttons, TextOfAButtonIsMadeSmallerRatherThanCut)
{
    button->setText("Registrierungsserver einrichten");
    page.open();
    const QRect ink = inkIn(kit::screen(), QRect(303, 103, 114, 44), look::kButton);
    EXPECT_GE(ink.left(), 306);
    EXPECT_LE(ink.right(), 413);
}

TEST_F(Buttons, ButtonWithoutLineHasNone)
{
    QPushButton* other = page.add<QPushButton>(QRect(100, 300, 120, 36));
    page.open();
    other->clearFocus();
    button->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 160, 300, look::kFieldLine));
    SetButtonNoLine(other);
    EXPECT_TRUE(isColour(kit::screen(), 160, 300, look::kButton));
}

TEST_F(Buttons, TransparentButtonShowsWhatIsBehindIt)
{
    SetButtonTransparent(button);
    page.open();
    button->clearFocus();
    EXPECT_TRUE(isColour(kit::screen(), 310, 125, kit::screen().pixel(500, 300)));
}

TEST_F(Buttons, FocusIsVisibleOnPictureButtons)
{
    setPictures();
    QPushButton* other = page.add<QPushButton>(QRect(100, 300, 120, 36));
    page.open();
    other->setFocus();
    EXPECT_FALSE(isColour(kit::screen(), 360, 97, look::kBlue, 20));
    button->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 360, 96, look::kBlue, 20)) << "above";
    EXPECT_TRUE(isColour(kit::screen(), 360, 153, look::kBlue, 20)) << "below";
    EXPECT_TRUE(isColour(kit::screen(), 296, 125, look::kBlue, 20)) << "left";
    EXPECT_TRUE(isColour(kit::screen(), 423, 125, look::kBlue, 20)) << "right";
}

TEST_F(Buttons, RingOfADiscIsRound)
{
    QImage image(50, 50, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setBrush(Qt::red);
    painter.drawEllipse(image.rect());
    painter.end();
    ASSERT_TRUE(image.save(hostPath("/rundata/disc.png")));
    button->setGeometry(300, 100, 50, 50);
    SetButton3StatusImage(button, "/rundata/disc.png", nullptr, nullptr);
    page.open();
    button->setFocus();
    EXPECT_TRUE(isColour(kit::screen(), 325, 96, look::kBlue, 20));
    EXPECT_TRUE(isColour(kit::screen(), 300, 100, kit::screen().pixel(600, 100), 8)) << "no corner";
}

TEST_F(Buttons, NullButtonsAreTolerated)
{
    SetButtonIcon(nullptr, "/rundata/icon.png");
    SetButtonNoLine(nullptr);
    SetButtonTextAlign(nullptr, 0x81);
    SetButtonTransparent(nullptr);
    SetButton3StatusImage(nullptr, "", "", "");
}

} // namespace
