#pragma once
// Writes letters with the phone's digit keys into one edit: any widget that takes text from an input
// method. A key that has several letters shows one as preedit text; pressing it again within a second
// goes on to the next. The letter is taken when the second is over, and before anything else is touched
// or pressed. Keys of a PC keyboard, which do not carry the keypad modifier, go straight to the edit.
// A read-only edit takes nothing.
#include <QObject>
#include <QStringList>
#include <QTimer>

class QKeyEvent;
class QWidget;

class DigitInput : public QObject
{
    Q_OBJECT
public:
    // methods: at least one; the first is the current one. The edit owns the object.
    DigitInput(QWidget* edit, const QStringList& methods);
    ~DigitInput() override;
    // Null for null and for an edit without input methods.
    static DigitInput* Of(QWidget* edit);

    QString Method() const { return m_methods.at(m_nMethod); }
    int SetMethod(const QString& method);
    void NextMethod();
    void TakeLetter();
    bool IsChoosing() const { return !m_letters.isEmpty(); }
    // Gives the letter that is being chosen up.
    void DropLetter();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool OnKeyPress(QObject* watched, const QKeyEvent* key);
    bool TakesKeys() const;
    void PressKey(QChar key);
    void Choose(QChar key, const QString& letters);
    void ShowLetter();
    void Send(const QString& commit, const QString& preedit);
    void EndChoice();
    void OnTextChanged();

    QWidget* m_pEdit;
    QStringList m_methods;
    int m_nMethod = 0;
    QTimer m_timer;
    QChar m_key;
    QString m_letters; // of the key that is being pressed; empty: nothing is being chosen
    int m_nLetter = 0;
    bool m_bSending = false;
};
