#include "support/host/ime.h"
#include "host/input/DigitInput.h"
#include "host/input/imeLetters.h"
#include "support/host/bars.h"
#include "support/host/trace.h"
#include <QCoreApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace {

QStringList knownMethods(const char* list)
{
    QStringList known;
    for (const QString& part : QString::fromUtf8(list).split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QString method = part.trimmed();
        if (imeIsMethod(method))
            known.append(method);
        else
            nuxTrace(TRACE_NOTE, "unknown input method \"%s\"", qPrintable(method));
    }
    known.removeDuplicates();
    return known;
}

QWidget* focusOf(const QDialog* dialog)
{
    return dialog ? dialog->focusWidget() : nullptr;
}

bool isTextEdit(const QWidget* widget)
{
    return qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget);
}

void deleteLetter(QWidget* edit)
{
    if (!edit->isEnabled() || edit->property("readOnly").toBool())
        return;
    if (QLineEdit* line = qobject_cast<QLineEdit*>(edit)) {
        line->backspace();
        return;
    }
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Backspace, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Backspace, Qt::NoModifier);
    QCoreApplication::sendEvent(edit, &release);
}

} // namespace

void qInstallIME(QWidget* edit, const char* list)
{
    qUninstallIME(edit);
    const QStringList methods = knownMethods(list);
    if (edit && !methods.isEmpty())
        new DigitInput(edit, methods);
}

void qUninstallIME(QWidget* edit)
{
    DigitInput* input = DigitInput::Of(edit);
    if (!input)
        return;
    input->TakeLetter();
    delete input;
}

int qSetCurrentIME(QWidget* edit, const char* name)
{
    DigitInput* input = DigitInput::Of(edit);
    return input ? input->SetMethod(QString::fromUtf8(name)) : 0;
}

QString qGetCurrentIME(QWidget* edit)
{
    const DigitInput* input = DigitInput::Of(edit);
    return input ? input->Method() : QString();
}

void qShift2NextIME(QWidget* edit)
{
    if (DigitInput* input = DigitInput::Of(edit))
        input->NextMethod();
}

void qOnIMEButtonClicked(QDialog* dialog, qSoftKeyBar* bar)
{
    QWidget* edit = focusOf(dialog);
    if (!DigitInput::Of(edit))
        return;
    qShift2NextIME(edit);
    const int index = bar ? bar->FindButton("IME") : -1;
    if (index >= 0)
        bar->SetButtonTitle(index, qGetCurrentIME(edit));
}

void qOnBackspaceClicked(QDialog* dialog)
{
    QWidget* edit = focusOf(dialog);
    DigitInput* input = DigitInput::Of(edit);
    if (input && input->IsChoosing())
        input->DropLetter();
    else if (qobject_cast<QLineEdit*>(edit) || isTextEdit(edit))
        deleteLetter(edit);
}

QString qReturnLineEdit(QLineEdit* edit)
{
    if (DigitInput* input = DigitInput::Of(edit))
        input->TakeLetter();
    return edit ? edit->text() : QString();
}
