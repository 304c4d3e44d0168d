#include "host/input/DigitInput.h"
#include "host/input/imeLetters.h"
#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextCharFormat>
#include <QWidget>

namespace {

constexpr int kChoiceMs = 1000;

bool isPadKey(const QKeyEvent* key)
{
    if (!(key->modifiers() & Qt::KeypadModifier) ||
        key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    const int code = key->key();
    return (code >= Qt::Key_0 && code <= Qt::Key_9) || code == Qt::Key_Asterisk || code == Qt::Key_NumberSign;
}

struct Surroundings
{
    explicit Surroundings(const QWidget* edit)
        : text(edit->inputMethodQuery(Qt::ImSurroundingText).toString()),
          cursor(edit->inputMethodQuery(Qt::ImCursorPosition).toInt()),
          anchor(edit->inputMethodQuery(Qt::ImAnchorPosition).toInt())
    {
    }
    bool isAtStart() const
    {
        const int from = qMin(cursor, anchor);
        return from <= 0 || from > text.size() || text.at(from - 1).isSpace();
    }
    int length() const { return int(text.size()) - qAbs(cursor - anchor); }

    QString text;
    int cursor;
    int anchor;
};

bool hasRoom(const QWidget* edit)
{
    const QVariant limit = edit->inputMethodQuery(Qt::ImMaximumTextLength);
    return !limit.isValid() || Surroundings(edit).length() < limit.toInt();
}

QList<QInputMethodEvent::Attribute> preeditLook(const QString& preedit)
{
    if (preedit.isEmpty())
        return {};
    QTextCharFormat format;
    format.setBackground(QColor(201, 222, 241));
    format.setFontUnderline(true);
    return {{QInputMethodEvent::TextFormat, 0, int(preedit.size()), format},
            {QInputMethodEvent::Cursor, int(preedit.size()), 1, QVariant()}};
}

} // namespace

DigitInput::DigitInput(QWidget* edit, const QStringList& methods)
    : QObject(edit), m_pEdit(edit), m_methods(methods)
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(kChoiceMs);
    connect(&m_timer, &QTimer::timeout, this, &DigitInput::TakeLetter);
    edit->installEventFilter(this);
    if (QLineEdit* line = qobject_cast<QLineEdit*>(edit))
        connect(line, &QLineEdit::textChanged, this, &DigitInput::OnTextChanged);
}

DigitInput::~DigitInput() = default;

DigitInput* DigitInput::Of(QWidget* edit)
{
    return edit ? edit->findChild<DigitInput*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
}

int DigitInput::SetMethod(const QString& method)
{
    const int index = int(m_methods.indexOf(method));
    if (index < 0)
        return 0;
    TakeLetter();
    m_nMethod = index;
    return 1;
}

void DigitInput::NextMethod()
{
    TakeLetter();
    m_nMethod = (m_nMethod + 1) % int(m_methods.size());
}

void DigitInput::TakeLetter()
{
    if (!IsChoosing())
        return;
    const QString letter = m_letters.at(m_nLetter);
    EndChoice();
    Send(letter, QString());
}

void DigitInput::DropLetter()
{
    if (!IsChoosing())
        return;
    EndChoice();
    Send(QString(), QString());
}

// While a letter is being chosen, this filters the application as well, ahead of the pages' own filters:
// whatever the user does next finds the letter in the text.
bool DigitInput::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
        return OnKeyPress(watched, static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return watched == m_pEdit && isPadKey(static_cast<QKeyEvent*>(event)) && TakesKeys();
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
        TakeLetter();
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
        if (watched == m_pEdit)
            TakeLetter();
        break;
    default:
        break;
    }
    return false;
}

bool DigitInput::OnKeyPress(QObject* watched, const QKeyEvent* key)
{
    if (!isPadKey(key)) {
        TakeLetter();
        return false;
    }
    if (key->type() != QEvent::KeyPress || watched != m_pEdit || !TakesKeys())
        return false;
    if (!key->isAutoRepeat()) // a held key counts once
        PressKey(QChar(key->key()));
    return true;
}

bool DigitInput::TakesKeys() const
{
    return m_pEdit->isEnabled() && !m_pEdit->property("readOnly").toBool();
}

void DigitInput::PressKey(QChar key)
{
    if (IsChoosing() && key == m_key) {
        m_nLetter = (m_nLetter + 1) % int(m_letters.size());
        ShowLetter();
        return;
    }
    TakeLetter();
    const QString letters = imeLetters(Method(), key, Surroundings(m_pEdit).isAtStart());
    if (letters.isEmpty() || !hasRoom(m_pEdit))
        return;
    if (letters.size() == 1)
        Send(letters, QString());
    else
        Choose(key, letters);
}

void DigitInput::Choose(QChar key, const QString& letters)
{
    m_key = key;
    m_letters = letters;
    m_nLetter = 0;
    qApp->installEventFilter(this);
    ShowLetter();
}

void DigitInput::ShowLetter()
{
    m_timer.start();
    Send(QString(), m_letters.at(m_nLetter));
}

void DigitInput::Send(const QString& commit, const QString& preedit)
{
    QInputMethodEvent event(preedit, preeditLook(preedit));
    event.setCommitString(commit);
    m_bSending = true;
    QCoreApplication::sendEvent(m_pEdit, &event);
    m_bSending = false;
}

void DigitInput::EndChoice()
{
    m_timer.stop();
    m_letters.clear();
    qApp->removeEventFilter(this);
}

// The page wrote into the edit: the letter belonged to the text that is gone.
void DigitInput::OnTextChanged()
{
    if (!m_bSending)
        DropLetter();
}
