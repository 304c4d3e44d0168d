// The clock of a menu is never cut, whatever its format and language.
#include "frame/configFiles.h"
#include "frame/dateTimeFormat.h"
#include "frame/dlgIconviewForm.h"
#include "support/host/language.h"
#include "support/host/net.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"
#include "tests/texts/paintedTexts.h"
#include <QLabel>
#include <QPixmap>

namespace {

class MenuClock : public PhoneTest
{
protected:
    ~MenuClock() override { GetLanguageHelper()->SetLanguage("English"); }
    static void setFormat(const QString& date, const char* time)
    {
        nuxSetRegistryString(USER_INI, "DateTime", "eDateFormat", fromQString(date));
        nuxSetRegistryString(USER_INI, "DateTime", "eTimeFormat", time);
    }
    QLabel* clock()
    {
        for (QLabel* label : m_form.findChildren<QLabel*>()) {
            if (label->geometry() == QRect(QPoint(600, 0), QPoint(799, 39)))
                return label;
        }
        return nullptr;
    }
    // Shows the present time, and says what of it was cut.
    std::string cut()
    {
        EXPECT_TRUE(QMetaObject::invokeMethod(&m_form, "on_update_dateTime"));
        EXPECT_EQ(clock()->text(), toQString(GetDateTime()));
        takeOverflows();
        takePaintedPixels();
        clock()->grab();
        m_nPixels = takePaintedPixels();
        EXPECT_GT(m_nPixels, 0);
        return takeOverflows().join("; ").toStdString();
    }

    dlgIconviewForm m_form;
    int m_nPixels = 0; // of the font
};

} // namespace

TEST_F(MenuClock, HasRoomInEveryFormatAndLanguage)
{
    const char* const dates[] = {"DD/MM/YYYY",      "MM/DD/YYYY",      "YYYY-MM-DD",      "YY-MM-DD",
                                 "WWW DD MMM",      "WWW MMM DD",      "WWW DD MMM YYYY", "WWW MMM-DD-YYYY",
                                 "WWW YYYY-MMM-DD", "WWW, DD MMM YYYY"};
    for (const char* language : {"English", "Chinese", "German", "French", "Spanish"}) {
        ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1);
        for (const char* date : dates) {
            for (const char* time : {"0", "1", "2"}) {
                setFormat(date, time);
                for (int month = 1; month <= 12; ++month) {
                    netSetLocalTime(2028, month, 20 + month % 7, 22, 48, 0);
                    EXPECT_EQ(cut(), "") << language << " " << date;
                    EXPECT_GE(m_nPixels, 12) << language << " " << qPrintable(clock()->text());
                }
            }
        }
    }
}

TEST_F(MenuClock, KeepsItsSizeWhereItFits)
{
    setFormat("DD/MM/YYYY", "0");
    EXPECT_EQ(cut(), "");
    EXPECT_EQ(m_nPixels, 16);
    setFormat("WWW DD MMM YYYY", "1");
    EXPECT_EQ(cut(), "");
    setFormat("DD/MM/YYYY", "0");
    EXPECT_EQ(cut(), "");
    EXPECT_EQ(m_nPixels, 16) << "after a longer one";
}

TEST_F(MenuClock, HasRoomWhateverAnAdministratorWrites)
{
    for (const QString& format : {QString("W").repeated(127), QString("WWW MMM ").repeated(15),
                                  QString("%1").arg("YYYY/MM/DD", 60), QString("DD/MM/YYYY").repeated(12)}) {
        setFormat(format, "1");
        EXPECT_EQ(cut(), "") << qPrintable(format);
    }
}
