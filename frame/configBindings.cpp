#include "frame/configBindings.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/text.h"
#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>

namespace {

void setUpEdit(QLineEdit* edit, const tagPageBinding& binding)
{
    if (binding.nMaxLength > 0)
        edit->setMaxLength(binding.nMaxLength);
    if (binding.szTyped && !edit->validator()) {
        const QRegularExpression typed(QString::fromUtf8(binding.szTyped));
        edit->setValidator(new QRegularExpressionValidator(typed, edit));
    }
}

void setUpWidget(const tagPageBinding& binding)
{
    if (binding.szImeList)
        qInstallIME(binding.pWidget, binding.szImeList);
    if (QLineEdit* edit = qobject_cast<QLineEdit*>(binding.pWidget))
        setUpEdit(edit, binding);
    QComboBox* box = qobject_cast<QComboBox*>(binding.pWidget);
    if (box && box->count() == 0)
        addChoices(box, binding.choices);
}

} // namespace

tagPageBinding::tagPageBinding(std::initializer_list<tagRadioChoice> buttons, HREGISTRY section,
                               const char* key, const char* def)
    : pWidget(buttons.begin()->pButton), hSection(section), szKey(key), szDefault(def)
{
    QButtonGroup* group = buttons.begin()->pButton->group();
    if (!group)
        group = new QButtonGroup(pWidget->parent());
    for (const tagRadioChoice& choice : buttons) {
        group->addButton(choice.pButton, int(&choice - buttons.begin()));
        qSetExternValue(choice.pButton, choice.szValue);
    }
}

void ConfigBindings::Bind(std::initializer_list<tagPageBinding> bindings)
{
    for (const tagPageBinding& binding : bindings) {
        setUpWidget(binding);
        if (binding.szImeAtShow)
            m_lstImeAtShow.append({binding.pWidget, binding.szImeAtShow});
        if (binding.szKey)
            BindWidget(binding.pWidget, binding.hSection, binding.szKey, binding.szDefault);
    }
}

void ConfigBindings::Unbind()
{
    clear();
    m_lstImeAtShow.clear();
}

void ConfigBindings::SetInputMethods()
{
    for (const tagImeAtShow& ime : m_lstImeAtShow)
        qSetCurrentIME(ime.pWidget, ime.szName);
}

int ConfigBindings::Check(std::initializer_list<tagPageCheck> checks)
{
    for (const tagPageCheck& check : checks) {
        if (!passes(check))
            return Refuse(check.pEdit, check.szMessage);
    }
    return 1;
}

bool ConfigBindings::passes(const tagPageCheck& check)
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

int ConfigBindings::StoreBindings()
{
    if (SaveConfigsToRegistry())
        BroadcastChange();
    return AreConfigsSaved();
}
