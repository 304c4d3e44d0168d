// The page of cameras.
#include "frame/modSetting.h"
#include "settings/call/dlgIpCamera.h"
#include "support/host/ime.h"
#include "support/host/managers.h"
#include "support/xml/xmlFile.h"
#include "tests/settings_call/callPageTest.h"
#include <QCheckBox>
#include <QFile>
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

#define CAMERAS_FILE "/rundata/data/ipcameradata.xml"

class CameraPage : public CallPageTest
{
protected:
    CameraPage()
    {
        writeFile(CAMERAS_FILE, "<IPCamera><note/>" + camera("IP Camera 1", "0", "2", "Gate", "8201", "11") +
                                    camera("IP Camera 2", "1", "", "Yard", "8202", "22") + "</IPCamera>");
        GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    }
    static QByteArray camera(const char* title, const char* model, const char* account, const char* name,
                             const char* number, const char* pin)
    {
        return QByteArray("<item title='") + title + "' own='1'><DeviceModel>" + model +
               "</DeviceModel><Account>" + account + "</Account><DisplayName>" + name +
               "</DisplayName><PhoneNumber>" + number + "</PhoneNumber><AccessPIN>" + pin +
               "</AccessPIN><Fullscreen>1</Fullscreen><Notsendvideo>0</Notsendvideo>"
               "<Notsendaudio>1</Notsendaudio><Own>x</Own></item>";
    }
    void openTitle(const char* title)
    {
        settingIpCamera_DoorPhone("SettingIPCamera", title, nullptr);
        kit::settle();
        page = kit::windows().value(0);
    }
    void openItem(int index)
    {
        settingIpCamera(GetIPCameraIconViewManager()->GetItems().value(index), nullptr);
        kit::settle();
        page = kit::windows().value(0);
    }
    // "model|account|name|number|pin|full|no video|no audio" of an entry of the file.
    QString entry(const char* title) const
    {
        xmlFile file(CAMERAS_FILE);
        const xmlElement* list = xmlFindElementFromRoot(&file, "IPCamera", 0);
        const xmlElement* found = list ? list->FindChildElementByAttribute("title", title) : nullptr;
        QStringList values;
        for (const char* name : {"DeviceModel", "Account", "DisplayName", "PhoneNumber", "AccessPIN",
                                 "Fullscreen", "Notsendvideo", "Notsendaudio"}) {
            chString value;
            PeekValue(found ? found->FindChildElement(name) : nullptr, value);
            values.append(value.GetText());
        }
        return values.join('|');
    }
    QString fields() const
    {
        QStringList values{child<QComboBox>("cmbDeviceModel")->currentText(),
                           child<QComboBox>("cmbAccount")->currentText(),
                           child<QLineEdit>("editPhoneName")->text(),
                           child<QLineEdit>("editPhoneNum")->text(), child<QLineEdit>("editPin")->text()};
        for (const char* box : {"chkFullScreen", "chkSendVideo", "chkSendAudio"})
            values.append(child<QCheckBox>(box)->isChecked() ? "1" : "0");
        return values.join('|');
    }
    // How a child process ends that does this.
    static int endOf(const std::function<void()>& doing)
    {
        const pid_t child = fork();
        if (child == 0) {
            alarm(20); // a box that it shows would wait for ever
            doing();
            _exit(0);
        }
        int status = 0;
        waitpid(child, &status, 0);
        return status;
    }
};

} // namespace

TEST_F(CameraPage, IsFilledFromAnIcon)
{
    openItem(0);
    EXPECT_EQ(pageClass(), "dlgIpCamera");
    EXPECT_EQ(title(), "IP Camera Setting");
    EXPECT_EQ(page->findChild<qLeftBar*>()->title(), "IP Camera");
    EXPECT_EQ(fields(), "Mobotix|Line3|Gate|8201|11|1|0|1");
    EXPECT_EQ(focusName(), "cmbDeviceModel");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    kit::shot("ip-camera");
    back();
    openItem(1);
    EXPECT_EQ(fields(), "Custom|Auto|Yard|8202|22|1|0|1");
    back();
    settingIpCamera(nullptr, nullptr);
    kit::settle();
    EXPECT_TRUE(page->isVisible());
    EXPECT_EQ(fields(), "Custom|Auto|Yard|8202|22|1|0|1") << "no item changes nothing";
}

TEST_F(CameraPage, IsFilledByItsTitle)
{
    openTitle("IP Camera 2");
    EXPECT_EQ(fields(), "Custom|Auto|Yard|8202|22|1|0|1");
    back();
    openTitle("IP Camera 1");
    EXPECT_EQ(fields(), "Mobotix|Line3|Gate|8201|11|1|0|1");
    back();
    openTitle("IP Camera 2");
    EXPECT_EQ(fields(), "Custom|Auto|Yard|8202|22|1|0|1") << "nothing of the camera before";
    back();
    openTitle("IP Camera 1");
    back();
    openTitle("Nowhere");
    EXPECT_EQ(fields(), "Mobotix|Line3|Gate|8201|11|1|0|1");
    enter("editPhoneName", "Other");
    expectSaved();
    EXPECT_EQ(entry("IP Camera 1"), "0|2|Gate|8201|11|1|0|1") << "no entry has that title";
}

TEST_F(CameraPage, OnlyTheActionOfCamerasOpensIt)
{
    for (const char* action : {"SettingDoorPhone", "SettingDoorPhone1", "settingIPCamera", ""})
        settingIpCamera_DoorPhone(action, "IP Camera 1", nullptr);
    kit::settle();
    EXPECT_TRUE(kit::windows().isEmpty());
    settingIpCamera_DoorPhone("SettingIPCamera7", "IP Camera 1", nullptr);
    EXPECT_EQ(kit::windows().size(), 1);
}

TEST_F(CameraPage, BoxesHoldTheirChoices)
{
    openItem(0);
    const auto items = [this](const char* name) {
        QStringList all;
        const auto* box = child<QComboBox>(name);
        for (int i = 0; i < box->count(); ++i)
            all.append(box->itemText(i) + " " + box->itemData(i).toString());
        return all;
    };
    EXPECT_EQ(items("cmbDeviceModel"), (QStringList{"Mobotix 0", "Custom 1"}));
    EXPECT_EQ(items("cmbAccount"), (QStringList{"Auto -1", "Line1 0", "Line2 1", "Line3 2", "Line4 3"}));
    EXPECT_EQ(child<QLineEdit>("editPhoneName")->maxLength(), 99);
    EXPECT_EQ(child<QLineEdit>("editPhoneNum")->maxLength(), 32);
    EXPECT_EQ(child<QLineEdit>("editPin")->maxLength(), 32);
    EXPECT_EQ(child<QLineEdit>("editPin")->echoMode(), QLineEdit::Password);
}

TEST_F(CameraPage, SoftKeysFollowTheFocus)
{
    openItem(0);
    kit::key(Qt::Key_Down, {}, {});
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "editPhoneName");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "2aB", "Delete", "Back"}));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(softKeys(), (QStringList{"Save", "123", "Delete", "Back"}));
    softKey(1);
    EXPECT_EQ(softKeyTitle(1), "2aB");
    kit::tap(child<QLineEdit>("editPhoneNum"));
    kit::key(Qt::Key_End);
    softKey(2);
    EXPECT_EQ(child<QLineEdit>("editPhoneNum")->text(), "820");
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "editPin");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "Delete", "Back"}));
    kit::key(Qt::Key_Down);
    EXPECT_EQ(focusName(), "chkFullScreen");
    EXPECT_EQ(softKeys(), (QStringList{"Save", "", "", "Back"}));
    EXPECT_TRUE(traces().contains("-----dlgIpCamera installEventFilter----------"));
    back();
    EXPECT_TRUE(traces().contains("-----dlgIpCamera removeEventFilter----------"));
}

TEST_F(CameraPage, SaveStoresTheEntryTellsAndEndsAsBackDoes)
{
    openItem(0);
    int result = -1;
    QObject::connect(qobject_cast<QDialog*>(page), &QDialog::finished, [&](int how) { result = how; });
    choose("cmbDeviceModel", "1");
    choose("cmbAccount", "0");
    enter("editPhoneName", "Main gate");
    enter("editPhoneNum", "9001");
    enter("editPin", "4242");
    tick("chkFullScreen", false);
    tick("chkSendVideo", true);
    tick("chkSendAudio", false);
    expectSaved();
    EXPECT_EQ(result, int(QDialog::Rejected)) << "a good save, too";
    expectChangesTold({"24 0"});
    EXPECT_EQ(entry("IP Camera 1"), "1|0|Main gate|9001|4242|0|1|0");
    EXPECT_EQ(entry("IP Camera 2"), "1||Yard|8202|22|1|0|1");
    EXPECT_TRUE(readFile(CAMERAS_FILE).contains("own=\"1\""));
    EXPECT_TRUE(readFile(CAMERAS_FILE).contains("<Own>x</Own>"));
    kit::settle();
    const auto& items = GetIPCameraIconViewManager()->GetItems();
    ASSERT_EQ(items.size(), 2);
    EXPECT_STREQ(items[0]->m_strDisplayName, "Main gate");
    EXPECT_TRUE(items[0]->m_bNotSendVideo);
    EXPECT_FALSE(items[0]->m_bNotSendAudio);
    EXPECT_EQ(items[1]->m_iIndex, 1) << "other elements do not count";
}

TEST_F(CameraPage, WithoutNameAndNumberItIsEmptiedAndWithANumberItIsNot)
{
    openItem(0);
    enter("editPhoneName", "  ");
    expectRefused(CAMERAS_FILE, "Display Name is invalid!", "editPhoneName");
    EXPECT_EQ(child<QLineEdit>("editPhoneName")->text(), "");
    expectChangesTold({});
    enter("editPhoneNum", "");
    expectSaved();
    EXPECT_EQ(entry("IP Camera 1"), "0|2|||11|1|0|1");
}

TEST_F(CameraPage, ANameOfAnotherCameraIsRefusedAndItsOwnIsNot)
{
    openItem(1);
    enter("editPhoneName", "Gate ");
    expectRefused(CAMERAS_FILE, "Display Name already exists!", "editPhoneName");
    EXPECT_EQ(child<QLineEdit>("editPhoneName")->text(), "");
    enter("editPhoneName", "Yard");
    expectSaved();
    openTitle("IP Camera 2");
    expectSaved();
    EXPECT_EQ(entry("IP Camera 2"), "1|-1|Yard|8202|22|1|0|1");
}

TEST_F(CameraPage, BackDrawsTheMenuAgainAndStoresNothing)
{
    openItem(0);
    enter("editPhoneName", "Other");
    mark();
    back();
    EXPECT_TRUE(traces().contains("RefreshXMLIconView(ipcameradata.xml)"));
    EXPECT_EQ(entry("IP Camera 1"), "0|2|Gate|8201|11|1|0|1");
}

TEST_F(CameraPage, AFullDiskIsToldAndWhatWasTypedStays)
{
    openItem(0);
    enter("editPhoneNum", "9009");
    expectFailedSave(CAMERAS_FILE);
    expectChangesTold({});
    EXPECT_EQ(child<QLineEdit>("editPhoneNum")->text(), "9009");
}

TEST_F(CameraPage, AModelThatNobodyKnowsIsNotChosenAndStays)
{
    writeFile(CAMERAS_FILE, "<IPCamera>" + camera("IP Camera 1", "7", "9", "Gate", "1", "") + "</IPCamera>");
    openTitle("IP Camera 1");
    EXPECT_EQ(child<QComboBox>("cmbDeviceModel")->currentIndex(), -1);
    expectSaved();
    EXPECT_TRUE(entry("IP Camera 1").startsWith("7|"));
}

TEST_F(CameraPage, TheLanguageHasItsWordWithNames)
{
    writeFile(CAMERAS_FILE,
              "<IPCamera>" + camera("IP Camera 1", "0", "0", "Voice Mail", "1", "") + "</IPCamera>");
    GetLanguageHelper()->SetLanguage("German");
    openTitle("IP Camera 1");
    EXPECT_EQ(child<QLineEdit>("editPhoneName")->text(), "Mailbox");
}

TEST_F(CameraPage, WithoutItsFileThePhoneEnds)
{
    openItem(0);
    ASSERT_TRUE(QFile::remove(hostPath(CAMERAS_FILE)));
    const auto ends = [](int status) { return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT; };
    EXPECT_TRUE(ends(endOf([this] { openTitle("IP Camera 1"); })));
    EXPECT_TRUE(ends(endOf([this] { save(); })));
    EXPECT_EQ(endOf([this] { back(); }), 0);
    writeFile(CAMERAS_FILE, "<IPCamera><item");
    EXPECT_TRUE(ends(endOf([this] { openTitle("IP Camera 1"); })));
    EXPECT_TRUE(ends(endOf([this] { save(); })));
    EXPECT_EQ(readFile(CAMERAS_FILE), "<IPCamera><item") << "never replaced";
}

TEST_F(CameraPage, ThePinIsInNoTraceAndTheFileIsThePhonesAlone)
{
    ASSERT_EQ(chmod(qPrintable(hostPath(CAMERAS_FILE)), 0644), 0);
    openItem(0);
    expectPinStaysSecret(CAMERAS_FILE);
}

TEST_F(CameraPage, EachOfTheThreeFlagsIsItsOwn)
{
    const QByteArray names[] = {"Fullscreen", "Notsendvideo", "Notsendaudio"};
    for (const QByteArray& only : names) {
        QByteArray one = camera("IP Camera 1", "0", "2", "Gate", "8201", "11");
        QByteArray others = camera("IP Camera 2", "0", "2", "Gate", "8201", "11");
        QString wanted = "Mobotix|Line3|Gate|8201|11";
        QString opposite = wanted;
        for (const QByteArray& name : names) {
            one.replace("<" + name + (name == only ? ">0<" : ">1<"),
                        "<" + name + (name == only ? ">1<" : ">0<"));
            others.replace("<" + name + (name == only ? ">1<" : ">0<"),
                           "<" + name + (name == only ? ">0<" : ">1<"));
            wanted += name == only ? "|1" : "|0";
            opposite += name == only ? "|0" : "|1";
        }
        writeFile(CAMERAS_FILE, "<IPCamera>" + one + others + "</IPCamera>");
        GetIPCameraIconViewManager()->RefreshIPCameraIconView();
        openItem(1);
        EXPECT_EQ(fields(), opposite) << only.constData();
        back();
        openTitle("IP Camera 1");
        EXPECT_EQ(fields(), wanted) << only.constData();
        back();
        openTitle("IP Camera 2");
        EXPECT_EQ(fields(), opposite) << only.constData();
        back();
        openItem(0);
        EXPECT_EQ(fields(), wanted) << only.constData();
        back();
    }
}

TEST_F(CameraPage, CamerasWithoutANameAreNoneOfAName)
{
    writeFile(CAMERAS_FILE, "<IPCamera>" + camera("IP Camera 1", "0", "2", "Gate", "8201", "11") +
                                camera("IP Camera 2", "1", "", "", "", "") + "</IPCamera>");
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    openItem(0);
    enter("editPhoneName", "");
    enter("editPhoneNum", "");
    expectSaved();
    EXPECT_EQ(entry("IP Camera 1"), "0|2|||11|1|0|1");
}

TEST_F(CameraPage, WhatStandsBetweenTheEntriesDoesNotCount)
{
    writeFile(CAMERAS_FILE, "<IPCamera>" + camera("IP Camera 1", "0", "2", "Gate", "8201", "11") +
                                "<note title='IP Camera 2'/>" +
                                camera("IP Camera 2", "1", "1", "Yard", "8202", "22") + "</IPCamera>");
    GetIPCameraIconViewManager()->RefreshIPCameraIconView();
    openTitle("IP Camera 2");
    EXPECT_EQ(fields(), "Custom|Line2|Yard|8202|22|1|0|1");
    expectSaved(); // its own name is not another's
    openTitle("IP Camera 1");
    enter("editPhoneName", "Yard");
    expectRefused(CAMERAS_FILE, "Display Name already exists!", "editPhoneName");
}

TEST_F(CameraPage, EachShowBeginsWithItsMethods)
{
    openItem(0);
    for (const char* edit : {"editPhoneName", "editPhoneNum"}) {
        kit::tap(child<QLineEdit>(edit));
        softKey(1);
    }
    back();
    openItem(0);
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editPhoneName")), "2aB");
    EXPECT_EQ(qGetCurrentIME(child<QLineEdit>("editPhoneNum")), "123");
}
