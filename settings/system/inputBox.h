#pragma once
// A box in the middle of the screen that asks for one line: an edit, and four buttons below it that step the
// input method, delete a character, confirm and cancel. User-interface thread.
#include <QDialog>
#include <QPixmap>

class QLabel;
class QLineEdit;
class QPushButton;

// The widgets of the form. The form covers the screen, the box lies in its middle.
struct tagInputBox
{
    QLabel* pTitle = nullptr;
    QLineEdit* pEdit = nullptr;
    QPushButton* pIme = nullptr;
    QPushButton* pDelete = nullptr;
    QPushButton* pOk = nullptr;
    QPushButton* pCancel = nullptr;
};

class InputBox : public QDialog
{
    Q_OBJECT
public:
    explicit InputBox(QWidget* parent);

protected:
    // In the constructor, after setupUi() and when the edit has its input methods.
    void BuildBox(const tagInputBox& parts);
    // Steps the input method and shows its name.
    void StepMethod();

    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void dressButtons();
    void showMethod();
    void renewBackground();

    tagInputBox m_parts;
    QPixmap m_background; // the whole screen, dimmed, with the empty box
};
