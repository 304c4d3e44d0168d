#include "frame/configPage.h"
#include "support/host/ime.h"
#include "support/host/text.h"
#include <QLineEdit>

ConfigPage::ConfigPage(QWidget* parent, tagLeftBarInfo* info) : SettingPage(parent, info) {}

void ConfigPage::Bind(std::initializer_list<tagPageBinding> bindings)
{
    for (const tagPageBinding& binding : bindings) {
        if (binding.szImeList)
            qInstallIME(binding.pWidget, binding.szImeList);
        if (binding.szImeAtShow)
            m_lstImeAtShow.append({binding.pWidget, binding.szImeAtShow});
        QLineEdit* edit = qobject_cast<QLineEdit*>(binding.pWidget);
        if (edit && binding.nMaxLength > 0)
            edit->setMaxLength(binding.nMaxLength);
        if (binding.szKey)
            BindWidget(binding.pWidget, binding.hSection, binding.szKey, binding.szDefault);
    }
}

int ConfigPage::Check(std::initializer_list<tagPageCheck> checks)
{
    for (const tagPageCheck& check : checks) {
        if (!passes(check))
            return Refuse(check.pEdit, check.szMessage);
    }
    return 1;
}

bool ConfigPage::passes(const tagPageCheck& check)
{
    const chString text = fromQString(qReturnLineEdit(check.pEdit));
    switch (check.eRule) {
    case CHECK_FILLED:
        return !text.IsEmpty();
    case CHECK_VALUE:
        return check.pValid(text) != 0;
    case CHECK_CHANGED:
        return text.IsEmpty() || !doesWidgetValueChanged(check.pEdit) || check.pValid(text) != 0;
    default:
        return !text.IsEmpty() && (!doesWidgetValueChanged(check.pEdit) || check.pValid(text) != 0);
    }
}

void ConfigPage::showEvent(QShowEvent* event)
{
    SettingPage::showEvent(event);
    ResetConfigsToRegistry();
    RefreshData();
    for (const tagImeAtShow& ime : m_lstImeAtShow)
        qSetCurrentIME(ime.pWidget, ime.szName);
    if (QWidget* first = FirstFocus())
        first->setFocus();
}

void ConfigPage::on_click_Save()
{
    if (!save())
        return;
    if (SaveConfigsToRegistry())
        BroadcastChange();
    accept();
}
