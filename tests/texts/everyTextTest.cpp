// Every page, menu and box of the phone in every language: no text is cut off or made smaller to fit.
#include "frame/dateTimeFormat.h"
#include "frame/dlgIconviewForm.h"
#include "frame/moduleEntries.h"
#include "frame/pageClass.h"
#include "frame/pageLists.h"
#include "frame/pageTable.h"
#include "host/desktop/dlgBrowser.h"
#include "host/desktop/frmCall.h"
#include "host/desktop/frmDial.h"
#include "host/services/phone/phoneService.h"
#include "host/services/phone/phoneSimulation.h"
#include "host/services/storage/storageWorld.h"
#include "host/widgets/dlgMessageBox.h"
#include "places.h"
#include "settings/call/dlgDialPlan.h"
#include "settings/call/dlgDssKeySetting.h"
#include "settings/call/dlgSpeedDial.h"
#include "settings/system/dlgPassWord.h"
#include "settings/system/dlgSetDialNumber.h"
#include "support/host/box.h"
#include "support/host/desktop.h"
#include "support/host/iconview.h"
#include "support/host/language.h"
#include "support/host/linepages.h"
#include "support/host/net.h"
#include "support/host/phone.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "tests/kit/phoneTest.h"
#include "tests/texts/paintedTexts.h"
#include "tests/texts/textRoom.h"
#include "tools/textKeys/shownKeys.h"
#include "tools/textKeys/sourceCode.h"
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QSet>
#include <QTemporaryDir>
#include <QTimer>
#include <QXmlStreamReader>

namespace {

const char* const kLanguages[] = {"English", "Chinese", "German", "French", "Spanish"};

// What the phone service says of calls that cannot be made, and of what cannot be done with one.
QStringList callReasons()
{
    QStringList reasons;
    for (const SourceFile& file : sourceFiles(HX_SOURCE_DIR, {"host/services/phone"}, {".cpp"})) {
        for (const QStringList& texts : literalCalls(file.text, {"HX_TR"}))
            reasons.append(texts.first());
    }
    reasons.removeDuplicates();
    return reasons;
}

class EveryText : public PhoneTest, public testing::WithParamInterface<const char*>
{
protected:
    EveryText()
    {
        hostSetModule(settingEntries());
        QObject::connect(&m_boxes, &QTimer::timeout, &m_boxes, [this] { lookAtBox(); });
        m_boxes.start(1);
        // What is shown only where there is an analogue line.
        phone_GetPSTNEnable();
        phoneSimulation::instance()->setPstn(1);
    }
    ~EveryText() override { GetLanguageHelper()->SetLanguage("English"); }

    void speak(const char* language)
    {
        ASSERT_EQ(GetLanguageHelper()->SetLanguage(language), 1);
        m_keys = shownKeys(HX_SOURCE_DIR);
        for (auto key = m_keys.begin(); key != m_keys.end(); ++key)
            m_texts.append(qTranslate(key.key().key.toUtf8().constData()));
    }

    void look(QWidget* window)
    {
        // Several classes may share the form of the one that they derive from.
        for (const QMetaObject* kind = window->metaObject(); kind; kind = kind->superClass())
            m_seen.insert(kind->className());
        for (const qLineBodyWidget* body : window->findChildren<qLineBodyWidget*>())
            m_seen.insert(body->metaObject()->className());
        for (const QString& cut : cutTexts(window, m_texts))
            m_cut.insert(cut);
    }
    void lookAtBox()
    {
        QDialog* box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        look(box);
        box->reject();
    }
    // All that is on the screen; then it goes.
    void lookAndClose()
    {
        kit::settle();
        mayShrink(toQString(GetDateTime()));
        for (QWidget* window : kit::windows()) {
            look(window);
            window->close();
        }
        kit::settle();
    }

    void visitPages();
    void visitImports();
    void visitMenus();
    void visitHome();
    void visitCalls();
    void visitFailures(frmCall& screen);
    void visitBoxes();
    void visitAll()
    {
        visitPages();
        visitImports();
        visitMenus();
        visitHome();
        visitCalls();
        visitBoxes();
    }
    std::string cut() const { return QStringList(m_cut.begin(), m_cut.end()).join("\n").toStdString(); }

    QSet<QString> m_seen; // classes of the windows
    QSet<QString> m_cut;

private:
    QTimer m_boxes;
    ShownKeys m_keys;
    QStringList m_texts;
};

void EveryText::visitPages()
{
    for (const tagPageRow* row = pageTable(); row != pageTable() + PAGE_ROW_COUNT; ++row) {
        const QString name = QString(row->szName) + (row->eMatch == MATCH_PREFIX ? "1" : "");
        settingOpenPage(chString(name.toUtf8().constData()), static_cast<QWidget*>(nullptr));
        lookAndClose();
        settingOpenPage(chString(name.toUtf8().constData()), tagLeftBarInfo{QString(), row->szName}, nullptr);
        lookAndClose();
    }
    // The title of each page, also of those that are still to come.
    qLeftBar bar;
    for (const tagPageRow* row = pageTable(); row != pageTable() + PAGE_ROW_COUNT; ++row) {
        bar.setTitle(qTranslate(row->szName));
        look(&bar);
    }
    for (PageClass* page = PageClass::First(); page; page = page->Next()) {
        page->Open(1, 1);
        lookAndClose();
    }
    dlgDialPlan plan(nullptr, nullptr);
    plan.show();
    lookAndClose();
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        PopupAccountDialog(account, 1);
        lookAndClose();
    }
    GetDssKeySetting()->ShowByDsskeyIndex(0);
    lookAndClose();
    getSpeedDialDialog()->show();
    lookAndClose();
    ShowLoadingTipBox();
    lookAndClose();
}

// The pages of a disk, which the lists of media open: the list of disks, then a file.
void EveryText::visitImports()
{
    QTemporaryDir disk;
    for (const char* name : {"a.png", "a.mp4", "a.wav"}) {
        QFile file(disk.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    ASSERT_FALSE(storageWorldPlug(STORAGE_USB, disk.path()).isEmpty());
    kit::settle();
    for (const char* name : {"Photo Manager", "Video Manager", "Sound Manager"}) {
        settingOpenPage(chString(name), static_cast<QWidget*>(nullptr));
        kit::settle();
        kit::key(Qt::Key_F3);
        kit::settle();
        look(kit::windows().first());
        kit::key(Qt::Key_Return);
        const QListWidget* files = kit::windows().first()->findChild<QListWidget*>();
        ASSERT_NE(files, nullptr) << name;
        EXPECT_TRUE(kit::waitUntil([&] { return files->count() == 2; })) << name;
        kit::key(Qt::Key_Down);
        kit::settle();
        lookAndClose();
    }
    EXPECT_EQ(storageWorldUnplug(disk.path()), 1);
}

void EveryText::visitMenus()
{
    nuxSetRegistryInt("/rundata/config/user/user.ini", "LDAP", "bEnable", 1);
    QStringList files = QDir(hostPath("/phone/resource/ui-config")).entryList({"*.xml"}, QDir::Files);
    files += {"doorphonedata.xml", "ipcameradata.xml"};
    EXPECT_GE(files.size(), 6);
    for (const QString& file : files) {
        settingOpenXml(fromQString(file));
        kit::settle();
        qIconView* view = getIconView();
        EXPECT_GT(view->GetPageCount(), 0) << qPrintable(file);
        for (int page = 0; page < view->GetPageCount(); ++page) {
            mayShrink(toQString(GetDateTime()));
            look(view->window());
            view->PageDown();
        }
        lookAndClose();
    }
    EXPECT_EQ(settingOpenFrame("Directory"), 1);
    lookAndClose();
}

void EveryText::visitHome()
{
    frmDesktop* desktop = frmDesktop::GetInstance();
    for (const char* format : {"0", "1"}) {
        nuxSetRegistryString("/rundata/config/user/user.ini", "DateTime", "eTimeFormat", format);
        for (int month = 1; month <= 12; ++month) {
            netSetLocalTime(2025, month, 20 + month % 7, 12, 59, 0); // each day of the week
            desktop->show();
            look(desktop);
        }
    }
    desktop->m_pLoading = new frmLoading;
    desktop->m_pLoading->show();
    for (int step = 0; settingCacheWindows(step); ++step)
        look(desktop->m_pLoading);
    desktop->FinishLoading();
    lookAndClose();
    dlgBrowser browser;
    browser.openPage("phone:nothing");
    lookAndClose();
}

// Beside a call that talks, where a text that has no room is shortened before it is painted.
void EveryText::visitFailures(frmCall& screen)
{
    ASSERT_TRUE(phoneSimulation::instance()->ring("1001", 0, ""));
    const int talking = phoneService::instance().calls().first().nId;
    ASSERT_TRUE(phoneService::instance().rules().answer(talking));
    const auto* others = screen.findChild<QLabel*>("labOthers");
    for (const QString& reason : callReasons()) {
        tagCall call;
        call.nId = talking + 1;
        call.strNumber = "004420794600";
        call.eState = CALL_ENDED;
        call.strReason = reason;
        screen.onCall(call);
        look(&screen);
        const QString text = QString(others->text()).replace('\n', ' ');
        if (!text.contains(qTranslate(reason.toUtf8().constData())))
            m_cut.insert("labOthers: " + others->text());
    }
    ASSERT_TRUE(phoneService::instance().rules().hangUp(talking));
}

void EveryText::visitCalls()
{
    frmCall screen;
    tagCall call;
    call.nId = 1;
    call.strNumber = "1002";
    for (const bool isIncoming : {false, true}) {
        for (const CALL_STATE state : {CALL_RINGING, CALL_TALKING, CALL_ENDED}) {
            for (const QString& reason : QStringList{QString()} + callReasons()) {
                call.bIncoming = isIncoming;
                call.eState = state;
                call.strReason = reason;
                screen.onCall(call);
                look(&screen);
            }
        }
    }
    call.eState = CALL_TALKING;
    for (const bool isOn : {false, true}) {
        call.bMuted = call.bHeld = call.bRemoteHeld = isOn;
        screen.onCall(call);
        look(&screen);
    }
    call.bHeld = false;
    screen.onCall(call);
    look(&screen);
    call.nJoined = 2;
    call.streams.strSound = "G.722";
    call.streams.nQuality = 1;
    call.streams.bEncrypted = true;
    call.strReason = HX_TR("The other side refuses the transfer");
    for (const char* picture : {"", "H.264"}) {
        for (const CALL_STATE state : {CALL_RINGING, CALL_TALKING}) {
            call.eState = state;
            call.streams.strPicture = picture;
            screen.onCall(call);
            look(&screen);
        }
    }
    visitFailures(screen);
    screen.hide();
    frmDial dial;
    for (const DIAL_FOR purpose : {DIAL_TRANSFER, DIAL_FORWARD}) {
        dial.openForCall(purpose, 1);
        look(&dial);
    }
    dial.openToCall("1", -1);
    look(&dial);
    phoneSimulation::instance()->setPstn(1);
    dial.openToCall("1", -1);
    lookAndClose();
    phoneSimulation::instance()->setPstn(0);
}

// A box may show any text of the phone.
void EveryText::visitBoxes()
{
    dlgPassWord password;
    password.show();
    lookAndClose();
    dlgSetDialNumber number(nullptr, nullptr);
    number.show();
    lookAndClose();
    for (const char* title : {"Note", "Warning", "Error"}) {
        dlgMessageBox box(qTranslate(title), qTranslate("Reboot device?"), BOX_QUESTION, nullptr);
        look(&box);
    }
    for (const QString& text : m_texts) {
        dlgMessageBox box(qTranslate("Note"), text, BOX_NOTE, nullptr);
        look(&box);
    }
}

} // namespace

TEST_P(EveryText, HasRoom)
{
    speak(GetParam());
    visitAll();
    EXPECT_EQ(cut(), "");
}

INSTANTIATE_TEST_SUITE_P(, EveryText, testing::ValuesIn(kLanguages),
                         [](const auto& language) { return std::string(language.param); });

using TheTour = EveryText;

// A form that no list of the phone leads to has to be visited here.
TEST_F(TheTour, ComesToEveryForm)
{
    visitAll();
    for (const SourceFile& file : sourceFiles(HX_SOURCE_DIR, phoneRooms(), {".ui"})) {
        QXmlStreamReader xml(file.text);
        while (xml.readNextStartElement() && xml.name() != QLatin1String("class")) {
        }
        EXPECT_TRUE(m_seen.contains(xml.readElementText())) << qPrintable(file.path);
    }
}

TEST_F(TheTour, SpeaksEveryLanguage)
{
    chObjArray<tagLanguageName, true, 4> names;
    GetLanguageHelper()->lang_GetAllName(names);
    QStringList all;
    for (const tagLanguageName& name : names)
        all.append(toQString(name.strName));
    EXPECT_EQ(all, QStringList(std::begin(kLanguages), std::end(kLanguages)));
}
