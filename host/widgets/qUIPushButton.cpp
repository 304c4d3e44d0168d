#include "host/look/buttonLook.h"
#include "support/host/button.h"
#include "support/host/image.h"

namespace {

void setPicture(ButtonLook& look, int state, const char* path)
{
    look.paths[state] = QString::fromUtf8(path);
    look.pictures[state] = path && *path ? GetImageManager()->GetImage(path) : QPixmap();
}

// The corner of a disc is empty a good way in.
bool isDisc(const QPixmap& picture)
{
    if (picture.isNull() || picture.width() != picture.height())
        return false;
    const QImage image = picture.toImage();
    const int inset = image.width() / 10;
    return qAlpha(image.pixel(inset, inset)) == 0;
}

} // namespace

qUIPushButton::qUIPushButton(QWidget* parent) : QPushButton(parent) {}

void qUIPushButton::setTextAlign(int flags)
{
    SetButtonTextAlign(this, flags);
}

int qUIPushButton::textAlign() const
{
    const ButtonLook* look = ButtonLook::of(this);
    return look && look->align >= 0 ? look->align : int(Qt::AlignCenter);
}

qUIPushButton* CreateUIPushButton(const QRect& rect, const char* name, QWidget* parent)
{
    qUIPushButton* button = new qUIPushButton(parent);
    button->setObjectName(QString::fromUtf8(name));
    button->setGeometry(rect);
    return button;
}

void SetButtonIcon(QPushButton* button, const char* picture)
{
    if (button)
        setPicture(ButtonLook::change(button), ButtonLook::Icon, picture);
}

void SetButtonNoLine(QPushButton* button)
{
    if (button)
        ButtonLook::change(button).noLine = true;
}

void SetButtonTextAlign(QPushButton* button, int flags)
{
    if (button)
        ButtonLook::change(button).align = flags;
}

void SetButtonTransparent(QPushButton* button)
{
    if (button)
        ButtonLook::change(button).transparent = true;
}

void SetButton3StatusImage(QPushButton* button, const char* normal, const char* pressed, const char* disabled)
{
    if (!button)
        return;
    ButtonLook& look = ButtonLook::change(button);
    setPicture(look, ButtonLook::Normal, normal);
    look.isRound = isDisc(look.pictures[ButtonLook::Normal]);
    setPicture(look, ButtonLook::Pressed, pressed);
    setPicture(look, ButtonLook::Disabled, disabled);
}

QString GetButtonImage(const QPushButton* button, int state)
{
    const ButtonLook* look = ButtonLook::of(button);
    return look && state >= 0 && state < ButtonLook::Pictures ? look->paths[state] : QString();
}
