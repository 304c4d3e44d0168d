// A change of the language on what the host shows, while it is on view.
#include "host/desktop/frmCall.h"
#include "host/desktop/homeStatus.h"
#include "host/services/phone/phoneSimulation.h"
#include "support/host/combo.h"
#include "support/host/desktop.h"
#include "support/host/dialogs.h"
#include "support/host/language.h"
#include "support/host/phone.h"
#include "tests/desktop/desktopTest.h"
#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>

namespace {

class HostLanguage : public DesktopTest
{
protected:
    ~HostLanguage() override { setLanguage("English"); }
    static void speak(const char* language)
    {
        setLanguage(language);
        kit::settle();
    }
    static void open(QWidget& window)
    {
        window.show();
        kit::settle();
    }
};

} // namespace

TEST_F(HostLanguage, TheTilesOfTheHomeScreenChangeAtOnce)
{
    frmDesktop* home = frmDesktop::GetInstance();
    home->FinishLoading();
    kit::settle();
    speak("German");
    EXPECT_EQ(home->findChild<QAbstractButton*>("tileSetting")->text(), "Einstellungen");
    QWidget above;
    above.setGeometry(0, 0, 800, 480);
    open(above);
    speak("French");
    EXPECT_EQ(home->findChild<QAbstractButton*>("tileSetting")->text(), "Réglages");
    home->hide();
    speak("Spanish");
    home->show();
    EXPECT_EQ(home->findChild<QAbstractButton*>("tileSetting")->text(), "Ajustes");
}

TEST_F(HostLanguage, ALineWithoutANumberIsNamedAtOnce)
{
    tagLineSetting nobody;
    nobody.user = "";
    ASSERT_TRUE(phoneSimulation::instance()->setLine(0, nobody));
    kit::settle();
    homeStatus status(nullptr);
    open(status);
    EXPECT_EQ(status.lineText(0), "Line 1");
    speak("German");
    EXPECT_EQ(status.lineText(0), "Leitung 1");
}

TEST_F(HostLanguage, AnOpenPhoneBookChangesItsBarsHeadingsAndRows)
{
    dlgPhoneBook book(nullptr, nullptr);
    open(book);
    EXPECT_EQ(rowsOf(&book).substr(0, 14), "Anna,1002,Auto");
    speak("Chinese");
    EXPECT_EQ(pageTitle(&book), "本地通讯录");
    EXPECT_EQ(softKeys(&book), "拨打|新建|编辑|返回");
    EXPECT_EQ(headingsOf(&book), "姓名,号码,线路");
    EXPECT_EQ(rowsOf(&book).substr(0, 16), "Anna,1002,自动");
}

TEST_F(HostLanguage, AnOpenEditorKeepsWhatWasTypedAndChosen)
{
    dlgContactEditor editor(nullptr, nullptr);
    editor.EditContact(-1);
    open(editor);
    editor.findChild<QLineEdit*>("editName")->setText("Ada");
    QComboBox* line = editor.findChild<QComboBox*>("cmbLine");
    QComboBox* picture = editor.findChild<QComboBox*>("cmbPicture");
    line->setCurrentIndex(2);
    picture->setCurrentIndex(1);
    const QString chosen = picture->currentText();
    speak("German");
    EXPECT_EQ(pageTitle(&editor), "Kontakt");
    EXPECT_EQ(line->currentText(), "Leitung 2");
    EXPECT_EQ(picture->itemText(0), "Ohne");
    EXPECT_EQ(picture->currentText(), chosen);
    EXPECT_EQ(editor.findChild<QLineEdit*>("editName")->text(), "Ada");
}

TEST_F(HostLanguage, TheDirectoryOfAServerChangesItsNotice)
{
    dlgLDAP ldap(nullptr, nullptr);
    ldap.initData("");
    open(ldap);
    speak("German");
    EXPECT_EQ(headingsOf(&ldap), "Name,Nummer");
    EXPECT_EQ(pageTitle(&ldap), "LDAP");
    EXPECT_EQ(softKeys(&ldap).substr(0, 6), "Suchen");
}

TEST_F(HostLanguage, ACallChangesItsStateItsLineAndItsKeys)
{
    callScreenInstall();
    ASSERT_EQ(phone_CallNumber("4711", 0, 0), 1);
    kit::settle();
    QWidget* screen = kit::windows().value(0);
    speak("German");
    EXPECT_EQ(labelText(screen, "labState"), "Verbindung wird aufgebaut\u00a0…");
    EXPECT_EQ(labelText(screen, "labVolume"), "Lautstärke");
    EXPECT_EQ(labelText(screen, "labLine"), "Leitung 1");
    EXPECT_EQ(softKeys(screen), "|Leiser|Lauter|Auflegen");
    speak("English");
    ASSERT_TRUE(kit::waitUntil([] { return phone_IsPhoneInTalk() == 1; }));
    kit::settle();
    tapSoftKey(screen, 0);
    speak("German");
    EXPECT_EQ(labelText(screen, "labMute"), "Stummgeschaltet");
    EXPECT_EQ(softKeys(screen), "Ton an|Halten|Übergeben|Auflegen");
}
