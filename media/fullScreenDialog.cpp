#include "media/fullScreenDialog.h"
#include "support/host/ui.h"
#include <QKeyEvent>

namespace {

const QRect kScreen(0, 0, 800, 480);

int keyOf(const QKeyEvent& event)
{
    return qIsOkKey(event.key()) ? int(Qt::Key_Return) : event.key();
}

} // namespace

FullScreenDialog::FullScreenDialog() : QDialog(nullptr, Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setFocusPolicy(Qt::StrongFocus); // it has no child that would take the keys
    setFocus();
    setGeometry(kScreen);
    // What is there before the first picture, and around it.
    QPalette black = palette();
    black.setColor(QPalette::Window, QColor(0, 0, 0));
    setPalette(black);
    setAutoFillBackground(true);
}

// Not the dialog's own keys: they would close it without its player.
void FullScreenDialog::keyPressEvent(QKeyEvent* event)
{
    m_down.insert(keyOf(*event));
    OnKeyDown(keyOf(*event));
}

void FullScreenDialog::keyReleaseEvent(QKeyEvent* event)
{
    if (!event->isAutoRepeat() && m_down.remove(keyOf(*event)))
        OnKeyUp(keyOf(*event));
}

void FullScreenDialog::EndShowByKeyDown(int key)
{
    if (key != Qt::Key_F4 && key != Qt::Key_F12)
        Destruct();
}

void FullScreenDialog::EndShowByKeyUp(int key)
{
    if (key == Qt::Key_F4)
        Destruct();
}

void FullScreenDialog::mouseReleaseEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}
