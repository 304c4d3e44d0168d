#pragma once
// The box that sets the number of a dial item. User-interface thread.
#include "settings/system/inputBox.h"
#include <QPointer>
#include <memory>

class qDialNumberItem;
namespace Ui {
class dlgSetDialNumber;
}

class dlgSetDialNumber : public InputBox
{
    Q_OBJECT
public:
    // item: may go before the box does, which then stores nothing.
    dlgSetDialNumber(qDialNumberItem* item, QWidget* parent);
    ~dlgSetDialNumber() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void on_click_ok();
    void on_click_cancel();
    void on_click_delete();
    // The next input method.
    void change_input();

private:
    std::unique_ptr<Ui::dlgSetDialNumber> ui;
    QPointer<qDialNumberItem> m_pItem;
    bool m_bTelling = false; // a note of its own lies on it
};
