#pragma once
// Small pages for the tests of the frame.
#include "frame/configPage.h"
#include "frame/settingPage.h"
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLineEdit>

// A page of the frame, without widgets of its own.
class dlgBarePage : public SettingPage
{
    Q_OBJECT
public:
    explicit dlgBarePage(QWidget* parent = nullptr, tagLeftBarInfo* info = nullptr, int keys = KEYS_EDIT)
        : SettingPage(parent, info), m_pBackground(new QFrame(this))
    {
        m_pBackground->setGeometry(0, 0, 800, 480);
        BuildFrame(m_pBackground, "WAN", keys);
    }
    using SettingPage::Refuse;
    PageFrame& frame() { return m_frame; }
    QFrame* m_pBackground;
};

// A page with an edit, a choice and a check box tied to keys of "Test" in system.ini.
class dlgConfigPage : public ConfigPage
{
    Q_OBJECT
public:
    explicit dlgConfigPage(QWidget* parent = nullptr, tagLeftBarInfo* info = nullptr);
    using ConfigPage::Bind;
    using ConfigPage::Check;
    PageFrame& frame() { return m_frame; }

    QLineEdit* m_pName;
    QLineEdit* m_pAddress;
    QComboBox* m_pKind;
    QCheckBox* m_pEnable;
    QLineEdit* m_pSeconds; // tied to user.ini, digits only
    int m_nRefreshed = 0;
    QString m_strRefreshedWith;
    int m_nBroadcasts = 0;
    int m_nSaveResult = 1;

protected:
    void RefreshData() override
    {
        ++m_nRefreshed;
        m_strRefreshedWith = m_pName->text();
    }
    QWidget* FirstFocus() override { return m_pAddress; }
    int save() override { return m_nSaveResult; }
    void BroadcastChange() override { ++m_nBroadcasts; }
};
