#pragma once
// The box with a bar that fills while another thread works, and "Cancel". It never decides by itself that it
// is over: what comes up over the page only takes it off the screen.
#include "host/widgets/boxDialog.h"
#include <QPointer>
#include <functional>

class QTimer;

class dlgProgressBox : public BoxDialog
{
    Q_OBJECT
public:
    // percent: asked while the box is seen, 0 to 100.
    dlgProgressBox(const QString& title, const QString& text, std::function<int()> percent, QWidget* page);
    // Something else has come up, and its page is not back yet.
    bool isAway() const { return m_bAway; }
    void reject() override;

signals:
    void cancelled();
    // Its page is there again, and so is the box.
    void back();

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QRect bar() const;
    void look();
    void comeBack();

    std::function<int()> m_percent;
    QPointer<QWidget> m_page;
    QTimer* m_pLook;
    int m_nShown = 0; // per cent
    bool m_bAway = false;
};
