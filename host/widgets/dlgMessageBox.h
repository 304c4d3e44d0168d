#pragma once
// The box that tells or asks: it covers the screen, shows the page behind it dimmed, and takes all touches.
#include <QDialog>
#include <QPixmap>

class QLabel;
class QPushButton;

class dlgMessageBox : public QDialog
{
    Q_OBJECT
public:
    // type: BOX_NOTE or BOX_QUESTION.
    dlgMessageBox(const QString& title, const QString& text, int type, QWidget* parent);
    // The box itself, in screen pixels.
    QRect boxRect() const { return m_box; }

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void showEvent(QShowEvent*) override;
    void changeEvent(QEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* addButton(const char* name, const char* key, const QRect& rect);
    void addButtons(int type);
    void stepFocus(int step);
    QPixmap drawBackground() const;
    void renewBackground();

    int m_nType;
    QRect m_box;
    QPixmap m_background; // the whole screen with the empty box
    QList<QPushButton*> m_buttons;
};
