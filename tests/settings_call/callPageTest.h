#pragma once
// What the tests of the call pages share: the room's pages, and the lines as the phone service tells them.
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "settings/call/callPages.h"
#include "support/host/text.h"
#include "tests/kit/pageTest.h"
#include <sys/stat.h>

class CallPageTest : public PageTest
{
protected:
    CallPageTest() { settingsCallPages(); }

    static QByteArray accountFile(int index)
    {
        return "/rundata/config/user/voip/sipAccount" + QByteArray::number(index) + ".cfg";
    }
    void setLine(int index, LINE_STATE state, const char* user = "1001", int newMessages = 0,
                 int oldMessages = 0)
    {
        phoneService::instance().backend();
        tagLineSetting line;
        line.state = state;
        line.user = user;
        line.server = "pbx.test";
        line.newMessages = newMessages;
        line.oldMessages = oldMessages;
        ASSERT_TRUE(phoneSimulation::instance()->setLine(index, line));
        kit::settle();
    }
    void hangUpAll()
    {
        for (const tagCall& call : phoneService::instance().calls())
            phoneService::instance().hangUp(call.nId);
        kit::settle();
    }
    // The page is open: a PIN that is saved is in no log, and its file is the phone's alone.
    void expectPinStaysSecret(const char* path)
    {
        enter("editPin", "9137");
        expectSaved();
        kit::settle();
        EXPECT_TRUE(readFile(path).contains("9137"));
        struct stat now = {};
        ASSERT_EQ(stat(qPrintable(hostPath(path)), &now), 0);
        EXPECT_EQ(now.st_mode & 0777, 0600u);
        for (const char* kind : {"trace", "broadcast", "box", "dial"}) {
            for (const QString& text : logged(kind))
                EXPECT_FALSE(text.contains("9137")) << qPrintable(text);
        }
    }
    QString title() const { return page->findChild<qTopBar*>()->title(); }
    QString pageClass() const { return page->metaObject()->className(); }
    QStringList softKeys() const
    {
        return {softKeyTitle(0), softKeyTitle(1), softKeyTitle(2), softKeyTitle(3)};
    }
    // What tells where a widget stands on the screen.
    QRect placeOf(const char* name) const
    {
        const QWidget* widget = child<QWidget>(name);
        return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
    }
};
