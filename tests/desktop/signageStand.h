#pragma once
// Stands in the module's place: notes what the host asks of the signage client, and shows a frame as it does.
#include "tests/desktop/desktopTest.h"
#include <QFrame>
#include <QPointer>

struct VOICE_PARAM;

class SignageTest : public DesktopTest
{
protected:
    SignageTest();
    ~SignageTest() override;

    // "register", "end", "show 1 frmDesktop 514,48 230x138", "hide 3 frmCall", "param 7 34028", ...
    std::string asked() const { return told().join("|").toStdString(); }
    static QStringList& told();
    static void forget() { told().clear(); }
    // The switch as a person or the provisioning writes it; waits until the phone has noticed.
    void switchClient(int on);
    static QWidget* frame();
    // The call's record, as long as a call has the media server.
    static VOICE_PARAM*& record();

    struct Switches
    {
        bool saver = true;
        bool talk = true;
        bool ringBack = false;
        bool shows = true; // what windowDisplay answers
    };
    static Switches& switches();
};
