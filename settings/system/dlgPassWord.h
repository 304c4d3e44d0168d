#pragma once
// The box that asks for the administrator's password. User-interface thread.
#include "settings/system/inputBox.h"
#include <memory>

class filePassword;
namespace Ui {
class dlgPassWord;
}

class dlgPassWord : public InputBox
{
    Q_OBJECT
public:
    explicit dlgPassWord(QWidget* parent = nullptr);
    ~dlgPassWord() override;

public slots:
    // Accepts a right password, and tells of a wrong one.
    void on_btnOK_clicked();
    void on_btnCancel_clicked();
    void on_btnDelet_clicked();
    // The next input method.
    void SetIME();

private:
    std::unique_ptr<Ui::dlgPassWord> ui;
    std::unique_ptr<filePassword> m_pPasswords;
    bool m_bChecking = false;
};
