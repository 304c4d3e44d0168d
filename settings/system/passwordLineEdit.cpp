#include "settings/system/passwordLineEdit.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include <QInputMethodEvent>
#include <QScopedValueRollback>

passwordLineEdit::passwordLineEdit()
{
    init();
}

passwordLineEdit::passwordLineEdit(QWidget* parent) : QLineEdit(parent), m_strReplaceChar(QStringLiteral("*"))
{
    init();
}

void passwordLineEdit::init()
{
    setFocusPolicy(Qt::StrongFocus);
    setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
}

void passwordLineEdit::setReplacedChar(QString mask)
{
    m_strReplaceChar = mask.left(1);
    take(m_strRealText);
}

void passwordLineEdit::makeConnect()
{
    connect(this, &QLineEdit::textEdited, this, &passwordLineEdit::AddorMinusChars, Qt::UniqueConnection);
    connect(this, &QLineEdit::textChanged, this, &passwordLineEdit::followText, Qt::UniqueConnection);
    connect(this, &QLineEdit::selectionChanged, this, &passwordLineEdit::rememberSelection,
            Qt::UniqueConnection);
}

void passwordLineEdit::initDisplayfromFile(const char* file, const char* section, const char* key)
{
    take(toQString(NUX_SubClass::nuxGetRegistryString(file, section, key, "")));
}

void passwordLineEdit::take(const QString& real)
{
    m_strRealText = real;
    m_strDisplay = masks(real.toUcs4().size());
    showMasks(int(m_strDisplay.size()));
}

// What the owner sets is a text like one that was typed.
void passwordLineEdit::followText()
{
    if (!m_bShows && text() != m_strDisplay)
        take(text());
}

// It is told after the text, so an edit finds here what was selected before it.
void passwordLineEdit::rememberSelection()
{
    m_nSelected = int(selectionLength());
}

void passwordLineEdit::AddorMinusChars(QString text)
{
    m_nCursor = cursorPosition();
    if (m_nTakenFrom >= 0) {
        processCommit();
        return;
    }
    m_nTyped = typedCharacters(text);
    if (m_nTyped > 0)
        onCurPos(m_nCursor);
    else
        processMinusChars();
}

// A mask that is typed over a selection looks as nothing did; whatever is no mask has just been typed.
int passwordLineEdit::typedCharacters(const QString& text) const
{
    int typed = qMax(0, int(text.size()) - m_nLength + m_nSelected);
    for (int i = 0; i < m_nCursor - typed; ++i) {
        if (text.mid(i, 1) != m_strReplaceChar)
            typed = m_nCursor - i;
    }
    return qMin(typed, m_nCursor);
}

void passwordLineEdit::onCurPos(int position)
{
    processReplacedChar(position);
}

void passwordLineEdit::processReplacedChar(int position)
{
    const QString typed = text().mid(position - m_nTyped, m_nTyped);
    const qsizetype from = position - m_nTyped;
    const qsizetype behind = text().size() - position;
    change(from, m_strDisplay.size() - behind - from, typed);
    showMasks(int(from + typed.toUcs4().size()));
}

void passwordLineEdit::processMinusChars()
{
    change(m_nCursor, m_strDisplay.size() - text().size(), QString());
    showMasks(m_nCursor);
}

// Counts characters, of which some are two units of a text: a mask is always one.
void passwordLineEdit::change(qsizetype from, qsizetype removed, const QString& typed)
{
    QList<uint> real = m_strRealText.toUcs4();
    const QList<uint> added = typed.toUcs4();
    // Where nothing shows there is no place but the end.
    const qsizetype place = m_strReplaceChar.isEmpty() ? real.size() : qBound(0, from, real.size());
    real.remove(place, qBound(0, removed, real.size() - place));
    for (qsizetype i = 0; i < added.size(); ++i)
        real.insert(place + i, added[i]);
    m_strRealText = QString::fromUcs4(reinterpret_cast<const char32_t*>(real.constData()), real.size());
    m_strDisplay = masks(real.size());
}

void passwordLineEdit::showMasks(int cursor)
{
    const QScopedValueRollback<bool> own(m_bShows, true);
    setText(m_strDisplay);
    setCursorPosition(cursor);
    m_nLength = int(m_strDisplay.size());
    m_nSelected = 0;
}

QString passwordLineEdit::masks(qsizetype count) const
{
    return m_strReplaceChar.repeated(count);
}

// What a composing input method shows before it is taken is masked too.
void passwordLineEdit::inputMethodEvent(QInputMethodEvent* event)
{
    QInputMethodEvent masked(masks(event->preeditString().size()), event->attributes());
    masked.setCommitString(event->commitString(), event->replacementStart(), event->replacementLength());
    measureCommit(masked);
    QLineEdit::inputMethodEvent(&masked);
    m_nTakenFrom = -1;
    event->setAccepted(masked.isAccepted());
}

// What was selected goes first; then the event counts from the cursor.
void passwordLineEdit::measureCommit(const QInputMethodEvent& event)
{
    m_nSelected = int(selectionLength());
    m_nSelectedFrom = hasSelectedText() ? selectionStart() : cursorPosition();
    const int left = int(text().size()) - m_nSelected;
    m_nTakenFrom = qBound(0, m_nSelectedFrom + event.replacementStart(), left);
    m_nTaken = qBound(0, event.replacementLength(), left - m_nTakenFrom);
}

// It says itself where it writes, so its text may look like masks and may stand behind the cursor.
void passwordLineEdit::processCommit()
{
    const QString typed = text().mid(m_nTakenFrom, text().size() - m_nLength + m_nSelected + m_nTaken);
    change(m_nSelectedFrom, m_nSelected, QString());
    change(m_nTakenFrom, m_nTaken, typed);
    const int shorter = int(typed.size() - typed.toUcs4().size());
    showMasks(m_nCursor >= m_nTakenFrom + typed.size() ? m_nCursor - shorter : m_nCursor);
}
