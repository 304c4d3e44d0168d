#include "frame/pageTexts.h"
#include "frame/choices.h"
#include "support/host/language.h"
#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>

namespace {

// English text of a widget of the form, and the translation that it shows.
const char kTextKey[] = "hxTextKey";
const char kTextShown[] = "hxTextShown";

// A text that the page has set since stays as it is.
template <class T>
void showTranslated(T* widget)
{
    if (!widget->property(kTextKey).isValid())
        widget->setProperty(kTextKey, widget->text());
    else if (widget->text() != widget->property(kTextShown).toString())
        return;
    const QString key = widget->property(kTextKey).toString();
    if (key.isEmpty())
        return;
    const QString shown = qTranslate(key.toUtf8().constData());
    widget->setText(shown);
    widget->setProperty(kTextShown, shown);
}

} // namespace

void translateTexts(QWidget* form)
{
    for (QLabel* label : form->findChildren<QLabel*>())
        showTranslated(label);
    for (QAbstractButton* button : form->findChildren<QAbstractButton*>())
        showTranslated(button);
    for (QComboBox* box : form->findChildren<QComboBox*>())
        translateChoices(box);
}
