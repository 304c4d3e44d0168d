#include "host/binding/widgetValue.h"
#include "support/host/combo.h"
#include "support/host/ime.h"
#include "support/host/text.h"
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>

namespace {

bool isTicked(const QString& stored)
{
    return stored.trimmed().toInt() != 0;
}

QString tickText(bool ticked)
{
    return QString(QLatin1Char(ticked ? '1' : '0'));
}

// The buttons of a group of which one can be checked: of its QButtonGroup, else those beside it.
QList<QRadioButton*> radiosOf(QRadioButton* button)
{
    QList<QRadioButton*> radios;
    if (QButtonGroup* group = button->group()) {
        for (QAbstractButton* member : group->buttons()) {
            if (QRadioButton* radio = qobject_cast<QRadioButton*>(member))
                radios.append(radio);
        }
        return radios;
    }
    if (!button->parentWidget())
        return {button};
    for (QRadioButton* radio :
         button->parentWidget()->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!radio->group())
            radios.append(radio);
    }
    return radios;
}

QString externValue(QRadioButton* radio)
{
    return toQString(qGetExternValue(radio));
}

void uncheck(QRadioButton* radio)
{
    QButtonGroup* group = radio->group();
    const bool groupExclusive = group && group->exclusive();
    const bool autoExclusive = radio->autoExclusive();
    if (group)
        group->setExclusive(false);
    radio->setAutoExclusive(false);
    radio->setChecked(false);
    radio->setAutoExclusive(autoExclusive);
    if (group)
        group->setExclusive(groupExclusive);
}

std::optional<QString> checkedValue(QRadioButton* button)
{
    for (QRadioButton* radio : radiosOf(button)) {
        if (radio->isChecked())
            return externValue(radio);
    }
    return std::nullopt;
}

// The one that shows a stored value; null when none does. Where nothing is stored it is the first.
QRadioButton* radioOf(QRadioButton* button, const QString& stored)
{
    const QList<QRadioButton*> radios = radiosOf(button);
    for (QRadioButton* radio : radios) {
        if (externValue(radio) == stored)
            return radio;
    }
    return stored.isEmpty() ? radios.first() : nullptr;
}

void checkByValue(QRadioButton* button, const QString& stored)
{
    if (QRadioButton* radio = radioOf(button, stored)) {
        radio->setChecked(true);
        return;
    }
    for (QRadioButton* radio : radiosOf(button)) {
        if (radio->isChecked())
            uncheck(radio);
    }
}

std::optional<QString> currentValue(QComboBox* box)
{
    const int index = box->currentIndex();
    if (index < 0)
        return std::nullopt;
    return toQString(qGetExternValue(box, index));
}

// The same for the items of a box: -1 when none does.
int indexOf(QComboBox* box, const QString& stored)
{
    for (int index = 0; index < box->count(); ++index) {
        if (toQString(qGetExternValue(box, index)) == stored)
            return index;
    }
    return stored.isEmpty() && box->count() > 0 ? 0 : -1;
}

} // namespace

std::optional<QString> widgetValue(QWidget* widget)
{
    if (QLineEdit* edit = qobject_cast<QLineEdit*>(widget))
        return qReturnLineEdit(edit);
    if (QCheckBox* box = qobject_cast<QCheckBox*>(widget))
        return tickText(box->isChecked());
    if (QComboBox* box = qobject_cast<QComboBox*>(widget))
        return currentValue(box);
    if (QRadioButton* radio = qobject_cast<QRadioButton*>(widget))
        return checkedValue(radio);
    return std::nullopt;
}

void setWidgetValue(QWidget* widget, const QString& stored)
{
    if (QLineEdit* edit = qobject_cast<QLineEdit*>(widget)) {
        qReturnLineEdit(edit);
        edit->setText(stored);
    } else if (QCheckBox* box = qobject_cast<QCheckBox*>(widget)) {
        box->setChecked(isTicked(stored));
    } else if (QComboBox* box = qobject_cast<QComboBox*>(widget)) {
        box->setCurrentIndex(indexOf(box, stored));
    } else if (QRadioButton* radio = qobject_cast<QRadioButton*>(widget)) {
        checkByValue(radio, stored);
    }
}

std::optional<QString> widgetFormOf(QWidget* widget, const QString& stored)
{
    if (QLineEdit* edit = qobject_cast<QLineEdit*>(widget))
        return stored.left(edit->maxLength());
    if (qobject_cast<QCheckBox*>(widget))
        return tickText(isTicked(stored));
    if (QComboBox* box = qobject_cast<QComboBox*>(widget)) {
        const int index = indexOf(box, stored);
        return index < 0 ? stored : toQString(qGetExternValue(box, index));
    }
    if (QRadioButton* button = qobject_cast<QRadioButton*>(widget)) {
        QRadioButton* radio = radioOf(button, stored);
        return radio ? externValue(radio) : stored;
    }
    return stored;
}
