#pragma once
// How a push button looks besides its text: pictures, icon, line. Kept with the button; the style draws it.
#include <QPixmap>
#include <QPushButton>
#include <QString>
#include <memory>

struct ButtonLook
{
    enum { Normal, Pressed, Disabled, Icon, Pictures };
    QString paths[Pictures];
    QPixmap pictures[Pictures];
    bool noLine = false;
    bool transparent = false;
    int align = -1;       // Qt alignment flags; -1 centres the text
    bool isRound = false; // the face is a disc
    bool ofBox = false;   // a button of a message box

    bool hasFace() const { return !pictures[Normal].isNull(); }
    // The picture of a state in the given size; a missing one is the normal one.
    const QPixmap& face(int state, const QSize& size) const;

    // Null when nothing was set on the button.
    static const ButtonLook* of(const QWidget* button);
    static ButtonLook& change(QPushButton* button);

private:
    mutable QPixmap m_scaled[Icon];
};
