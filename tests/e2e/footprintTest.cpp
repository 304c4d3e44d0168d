// What a phone carries with it that shows no rich text.
#include "tests/e2e/livePhone.h"
#include <QFile>

namespace {

class Footprint : public LivePhone
{
protected:
    QByteArray memoryMap()
    {
        QFile maps(QString("/proc/%1/maps").arg(pid()));
        EXPECT_TRUE(maps.open(QIODevice::ReadOnly));
        return maps.readAll();
    }
};

} // namespace

TEST_F(Footprint, NothingOfTheRichTextEngineIsInMemory)
{
    ctl({"open", "WAN"});
    waitPage("dlgWan");
    const QByteArray map = memoryMap();
    EXPECT_TRUE(map.contains("libhxHost.so"));
    for (const char* library : {"libhxWeb", "WebEngine", "WebChannel", "Qt6Qml", "Qt6Quick", "libnss"})
        EXPECT_FALSE(map.contains(library)) << library;
}
