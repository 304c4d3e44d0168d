#include <QApplication>
#include <gtest/gtest.h>
#include <unistd.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    // The browser of a test has no graphics card, and as the superuser no sandbox.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", geteuid() == 0 ? "--disable-gpu --no-sandbox" : "--disable-gpu");
    qputenv("QT_QUICK_BACKEND", "software");
    // The page's own warnings.
    qputenv("QT_LOGGING_RULES", "js=false");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
