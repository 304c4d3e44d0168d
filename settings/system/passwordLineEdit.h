#pragma once
// An edit that shows a mask for each character that is typed, and keeps what it really was. For pages of the
// host. User-interface thread.
#include "support/host/api.h"
#include <QLineEdit>

class HX_MODULE_API passwordLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    // Without a mask: nothing of what is typed shows until the owner sets one.
    passwordLineEdit();
    // Masked by "*".
    explicit passwordLineEdit(QWidget* parent);

    // The mask is the first character of the text.
    void setReplacedChar(QString mask);
    // The owner calls it once.
    void makeConnect();
    // Takes the stored text of a key; file is a device path.
    void initDisplayfromFile(const char* file, const char* section, const char* key);
    // What the user really typed.
    const QString& realText() const { return m_strRealText; }

public slots:
    void replace() {}
    void AddorMinusChars(QString text);

protected:
    void inputMethodEvent(QInputMethodEvent* event) override;

private slots:
    void rememberSelection();
    void followText();

private:
    void init();
    QString masks(qsizetype count) const;
    int typedCharacters(const QString& text) const;
    void onCurPos(int position);
    void processReplacedChar(int position);
    void processMinusChars();
    void measureCommit(const QInputMethodEvent& event);
    void processCommit();
    void change(qsizetype from, qsizetype removed, const QString& typed);
    void take(const QString& real);
    void showMasks(int cursor);

    QString m_strReplaceChar;
    int m_nLength = 0; // of the text after the last edit
    int m_nCursor = 0; // at the last edit
    QString m_strRealText;
    QString m_strDisplay; // one mask for each character of the real text
    int m_nTyped = 0;     // characters that the edit has brought, before the cursor
    int m_nSelected = 0;  // characters that were selected before the edit
    int m_nSelectedFrom = 0;
    int m_nTaken = 0;      // characters that an input method's text takes the place of, and
    int m_nTakenFrom = -1; // where they begin when what was selected has gone; -1: none is at work
    bool m_bShows = false; // the text changes by the edit's own hand
};
