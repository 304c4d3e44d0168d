#pragma once
// What lies in the middle of the screen and waits for a person: it covers the screen, shows the page behind
// it dimmed, and takes all touches.
#include <QDialog>
#include <QPixmap>
#include <QPointer>

class QPushButton;

class BoxDialog : public QDialog
{
    Q_OBJECT
public:
    // The box itself, in screen pixels.
    QRect boxRect() const { return m_box; }

protected:
    // picture: device path of the sign beside the text. below: pixels between the text and the buttons that
    // the kind of box takes for itself.
    BoxDialog(const QString& title, const QString& text, const char* picture, int below, QWidget* parent);
    // key: English key. place: 0 is the rightmost one.
    QPushButton* addButton(const char* name, const char* key, int place);
    // What the kind of box takes for itself, as wide as the text.
    QRect belowText() const;

    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void showEvent(QShowEvent*) override;
    void changeEvent(QEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void addTexts(const QString& title, const QString& text);
    void stepFocus(int step);
    QPixmap drawBackground();
    void renewBackground();
    void followWindows();

    const char* m_szPicture;
    int m_nTextHeight;
    int m_nBelow;
    QRect m_box;
    QPixmap m_background;        // the whole screen with the empty box
    QPointer<QWidget> m_pBehind; // the window that is seen there
    QList<QPushButton*> m_buttons;
};
