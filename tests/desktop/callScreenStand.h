#pragma once
// The call screen over a page, and simulated calls that a person sees and answers there.
#include "host/services/phone/tagCall.h"
#include "tests/desktop/desktopTest.h"
#include <QWidget>

class callAction;
class frmCall;
class frmDial;

class CallScreenStand : public DesktopTest
{
protected:
    // Another call may ring beside one that talks.
    CallScreenStand();
    ~CallScreenStand() override { hangUpAll(); }

    // What a person sees on top; null where that is something else.
    static frmCall* screen();
    static frmDial* dial();
    // Of the call screen.
    static QWidget* child(const char* name);
    static callAction* action(const char* name);
    static std::string text(const char* label);
    static std::string name() { return text("labName"); }
    static std::string state() { return text("labState"); }
    static std::string others() { return text("labOthers"); }

    // As the phone knows them; one that is not there has no number.
    static QList<tagCall> calls();
    static tagCall call(const char* number);
    // Somebody calls, at a moment when the user does something else; the call's id.
    static int comesIn(const char* number, const char* name = "", int line = 0);
    // The same, until what is pressed counts for that call.
    static int ring(const char* number, const char* name = "", int line = 0);
    // And it is answered.
    static int talk(const char* number, const char* name = "", int line = 0);

    QWidget below;
};
