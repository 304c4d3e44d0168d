#include "tests/frame/testPages.h"
#include "frame/configFiles.h"
#include "support/host/combo.h"

dlgConfigPage::dlgConfigPage(QWidget* parent, tagLeftBarInfo* info) : ConfigPage(parent, info)
{
    QFrame* background = new QFrame(this);
    background->setGeometry(0, 0, 800, 480);
    m_pName = new QLineEdit(this);
    m_pName->setGeometry(200, 60, 300, 36);
    m_pAddress = new QLineEdit(this);
    m_pAddress->setGeometry(200, 110, 300, 36);
    m_pKind = new QComboBox(this);
    m_pKind->setGeometry(200, 160, 300, 36);
    m_pEnable = new QCheckBox(this);
    m_pEnable->setGeometry(200, 210, 300, 36);
    m_pSeconds = new QLineEdit(this);
    m_pSeconds->setGeometry(200, 260, 300, 36);
    qAddComboBoxItem(m_pKind, "First", "one");
    qAddComboBoxItem(m_pKind, "Second", "two");
    BuildFrame(background, "WAN", KEYS_EDIT);
    const HREGISTRY section = registryOpen(SYSTEM_INI, "Test");
    Bind({
        {m_pName, section, "strName", "nobody", "2aB,ABC,abc,123", "ABC", 12},
        {m_pAddress, section, "strAddress", "", "123_IP,123", "123"},
        {m_pKind, section, "eKind", "two"},
        {m_pEnable, section, "bEnable", "1"},
        {m_pSeconds, registryOpen(USER_INI, "Test"), "nSeconds", "", "123", "123", 3, DIGITS_ONLY},
    });
}
