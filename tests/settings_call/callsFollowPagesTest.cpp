// What the pages store for calls holds for the next call of the running phone: each key that they write, one
// after the other.
#include "host/services/phone/doNotDisturb.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "tests/settings_call/callSettingTest.h"
#include <QCheckBox>
#include <functional>
#include <set>

namespace {

constexpr int kLine = 1;

class CallsFollowPages : public LineSettingTest
{
protected:
    CallsFollowPages()
    {
        writeFile(USER_FILE, "");
        phoneService::instance().setBackend(std::make_unique<phoneSimulation>());
        phoneSimulation::instance()->setPstn(1);
        tagLineSetting line;
        line.state = LINE_DEFAULT_ACCOUNT;
        line.user = "1001";
        line.server = "pbx.test";
        EXPECT_TRUE(phoneSimulation::instance()->setLine(kLine, line));
        kit::settle();
    }
    ~CallsFollowPages() override { hangUpAll(); }

    static callRules& rules() { return phoneService::instance().rules(); }
    static QList<tagCall> calls() { return phoneService::instance().calls(); }
    static void hangUpAll()
    {
        for (const tagCall& call : calls())
            phoneService::instance().hangUp(call.nId);
        kit::settle();
    }
    static tagCall lastEnded()
    {
        const QList<tagCall> ended = phoneService::instance().backend().endedCalls();
        return ended.isEmpty() ? tagCall() : ended.first();
    }
    // What has become of a call from outside after so many seconds.
    static std::string fateOfCall(int seconds, bool isAnonymous, int line)
    {
        tagCaller caller;
        caller.strNumber = "4711";
        caller.nLine = line;
        caller.bAnonymous = isAnonymous;
        const qsizetype before = calls().size();
        EXPECT_TRUE(phoneSimulation::instance()->ringFrom(caller));
        kit::settle();
        kit::stepTime(seconds * 1000);
        if (calls().size() > before)
            return calls().last().eState == CALL_TALKING ? "talks" : "rings";
        switch (lastEnded().eEnd) {
        case CALL_FORWARDED:
            return "forwarded to " + lastEnded().strTarget.toStdString();
        case CALL_BUSY:
            return "busy";
        case CALL_REJECTED:
            return "rejected";
        case CALL_DISTURBED:
            return "disturbed";
        default:
            return "otherwise";
        }
    }
    static std::string fate(int seconds = 0, bool isAnonymous = false)
    {
        const std::string fate = fateOfCall(seconds, isAnonymous, kLine);
        hangUpAll();
        return fate;
    }
    static std::string fateBeside(int line = kLine)
    {
        EXPECT_EQ(fateOfCall(0, false, kLine), "rings");
        EXPECT_TRUE(phoneService::instance().answer(calls().first().nId));
        kit::settle();
        const std::string fate = fateOfCall(0, false, line);
        hangUpAll();
        return fate;
    }
    // Of a call that is made.
    static tagCall dialled()
    {
        EXPECT_NE(rules().dial("600", kLine), 0);
        const tagCall call = calls().isEmpty() ? tagCall() : calls().last();
        hangUpAll();
        return call;
    }
    // What the exchange is told after a save, one code after the other.
    static std::string codes()
    {
        QStringList codes;
        while (kit::waitUntil([] { return !calls().isEmpty(); }, 200)) {
            codes.append(calls().first().strNumber);
            hangUpAll();
        }
        return codes.join(' ').toStdString();
    }
    // "section/key" of each key in the file.
    std::set<std::string> keysIn(const char* file) const
    {
        std::set<std::string> keys;
        QByteArray section;
        for (const QByteArray& line : readFile(file).split('\n')) {
            if (line.startsWith('['))
                section = line.mid(1, line.indexOf(']') - 1);
            else if (line.contains('='))
                keys.insert((section + '/' + line.left(line.indexOf('='))).toStdString());
        }
        return keys;
    }
    // All that a page can change is changed, and stored.
    void changeAll(const char* name)
    {
        open(name);
        const auto all = [](QWidget* in) {
            for (auto* box : in->findChildren<QCheckBox*>())
                box->click();
            for (auto* box : in->findChildren<QComboBox*>())
                box->setCurrentIndex((box->currentIndex() + 1) % box->count());
            for (auto* edit : in->findChildren<QLineEdit*>())
                edit->setText("7");
        };
        all(lines() ? lines()->GetLinePage(kLine) : page);
        expectSaved();
        kit::settle();
        hangUpAll();
    }
    void onPage(const char* name, const std::function<void()>& change)
    {
        open(name);
        if (lines())
            onLine(kLine, change);
        else
            change();
        expectSaved();
        kit::settle();
    }
};

struct tagRow
{
    const char* szPage;
    const char* szKey; // with its section
    std::function<void()> change;
    std::function<std::string()> effect;
    const char* szBefore;
    const char* szAfter;
};

} // namespace

TEST_F(CallsFollowPages, EachKeyThatTheyWriteHoldsForTheNextCall)
{
    const auto forwarded = [] { return fate(); };
    const auto beside = [] { return fateBeside(); };
    const auto late = [] { return fate(10); };
    const auto hidden = [] { return fate(0, true); };
    const auto mode = [] { return std::string(dialled().options.bVideo ? "video" : "voice"); };
    const auto camera = [] { return std::string(dialled().options.bCamera ? "seen" : "not seen"); };
    const auto bits = [] { return std::to_string(dialled().options.nBandwidth); };
    const auto rate = [] { return std::to_string(dialled().options.nFrameRate); };
    const auto own = [] { return std::string(dialled().bAnonymous ? "hidden" : "shown"); };
    const auto told = [] { return codes(); };
    const auto hotline = [] {
        const tagHotline hotline = callSettings::hotline();
        return hotline.strNumber.toStdString() + " after " + std::to_string(hotline.nDelay);
    };
    const auto sendKey = [] {
        const QChar key = rules().settings().sendKey();
        return key.isNull() ? std::string("none") : QString(key).toStdString();
    };
    const tagRow rows[] = {
        {"Forward", "AlwaysForward/bEnable",
         [this] {
             tick("chkAlways", true);
             enter("editAlways", "555");
         },
         forwarded, "rings", "forwarded to 555"},
        {"Forward", "AlwaysForward/strTarget", [this] { enter("editAlways", "556"); }, forwarded,
         "forwarded to 555", "forwarded to 556"},
        {"Forward", "AlwaysForward/bEnable", [this] { tick("chkAlways", false); }, forwarded,
         "forwarded to 556", "rings"},
        {"Forward", "BusyForward/bEnable",
         [this] {
             tick("chkBusy", true);
             enter("editBusy", "601");
         },
         beside, "busy", "forwarded to 601"},
        {"Forward", "BusyForward/strTarget", [this] { enter("editBusy", "602"); }, beside, "forwarded to 601",
         "forwarded to 602"},
        {"Forward", "BusyForward/bEnable", [this] { tick("chkBusy", false); }, beside, "forwarded to 602",
         "busy"},
        {"Forward", "NoAnswerForward/bEnable",
         [this] {
             tick("chkNoAnswer", true);
             enter("editNoAnswer", "701");
             enter("editBlank", "5");
         },
         late, "rings", "forwarded to 701"},
        {"Forward", "NoAnswerForward/strTarget", [this] { enter("editNoAnswer", "702"); }, late,
         "forwarded to 701", "forwarded to 702"},
        {"Forward", "NoAnswerForward/nTimeout", [this] { enter("editBlank", "30"); }, late,
         "forwarded to 702", "rings"},
        {"Call Waiting", "CallWaiting/bEnable", [this] { tick("chkBoxenable", true); }, beside, "busy",
         "rings"},
        {"Call Waiting", "CallWaiting/bEffectPstn", [this] { choose("cmbBoxPSTN", "1"); },
         [] { return fateBeside(PHONE_LINE_PSTN); }, "busy", "rings"},
        {"Call Waiting", "CallWaiting/bEnable", [this] { tick("chkBoxenable", false); }, beside, "rings",
         "busy"},
        {"Auto Answer", "AutoAnswer/bEnable", [this] { tick("chkAutoAnswer", true); }, forwarded, "rings",
         "talks"},
        {"Auto Answer", "AutoAnswer/nTimeout", [this] { choose("cmbAutoAnswerType", "15"); }, late, "talks",
         "rings"},
        {"Auto Answer", "AutoAnswer/bEnable", [this] { tick("chkAutoAnswer", false); },
         [] { return fate(20); }, "talks", "rings"},
        {"Anonymous Call", "account/AnonymousCall", [this] { choose("cmbAnonymousCall", "1"); }, own, "shown",
         "hidden"},
        {"Anonymous Call", "account/RejectAnonymousCall",
         [this] { choose("cmbAnonymousCallRejection", "1"); }, hidden, "rings", "rejected"},
        {"Anonymous Call", "account/AnonymousCall_OffCode",
         [this] {
             enter("editAnonymousCallOffCode", "*2");
             choose("cmbAnonymousCall", "0");
         },
         told, "", "*2"},
        {"Anonymous Call", "account/AnonymousCall_OnCode",
         [this] {
             enter("editAnonymousCallOnCode", "*1");
             choose("cmbAnonymousCall", "1");
         },
         told, "", "*1"},
        {"Anonymous Call", "account/AnonymousReject_OffCode",
         [this] {
             enter("editRejectionOffCode", "*4");
             choose("cmbAnonymousCallRejection", "0");
         },
         told, "", "*4"},
        {"Anonymous Call", "account/AnonymousReject_OnCode",
         [this] {
             enter("editRejectionOnCode", "*3");
             choose("cmbAnonymousCallRejection", "1");
         },
         told, "", "*3"},
        {"Video Set", "CallOption/bActiveCamera", [this] { choose("cmbLocalVideo", "0"); }, camera, "seen",
         "not seen"},
        {"Video Set", "ADVANCED/VideoBandwidth", [this] { choose("cmbBandwidth", "512"); }, bits, "0", "512"},
        {"Video Set", "hxMedia/nFrameRate", [this] { choose("cmbFrameRate", "10"); }, rate, "30", "10"},
        {"Video Set", "CallOption/eCallMode", [this] { choose("cmbCallType", "0"); }, mode, "video", "voice"},
        {"Hotline", "Hotline/strNumber", [this] { enter("editNumber", "112"); }, hotline, " after 2",
         "112 after 2"},
        {"Hotline", "Hotline/nTimeDelay", [this] { enter("editDelayTime", "7"); }, hotline, "112 after 2",
         "112 after 7"},
        {"Key As Send", "KeyAsSend/eType", [this] { choose("cmbBoxKeyAsSend", "2"); }, sendKey, "none", "*"},
    };
    std::set<std::string> known;
    std::set<std::string> pages;
    for (const tagRow& row : rows) {
        SCOPED_TRACE(row.szKey);
        known.insert(row.szKey);
        pages.insert(row.szPage);
        EXPECT_EQ(row.effect(), row.szBefore);
        onPage(row.szPage, row.change);
        EXPECT_EQ(row.effect(), row.szAfter);
    }
    EXPECT_EQ(fate(), "rings");
    EXPECT_TRUE(doNotDisturb::setOn(true));
    EXPECT_EQ(fate(), "disturbed");
    EXPECT_TRUE(doNotDisturb::setOn(false));
    EXPECT_EQ(fate(), "rings");

    // Whoever adds a key to one of the pages says here what it does.
    for (const std::string& name : pages)
        changeAll(name.c_str());
    known.insert("DND/bEnable");
    for (const QByteArray& file : {QByteArray(USER_FILE), QByteArray(lineFile(kLine))}) {
        for (const std::string& key : keysIn(file.constData()))
            EXPECT_EQ(known.count(key), 1u) << key << " has no row";
    }
}
