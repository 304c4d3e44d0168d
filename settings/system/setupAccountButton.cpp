#include "settings/system/setupAccountButton.h"
#include "settings/system/accountLook.h"
#include "support/host/button.h"
#include "support/host/ui.h"

namespace {

constexpr int kFontSize = 10;
constexpr int kLongestText = 13;
constexpr int kKeptText = 14;

} // namespace

void setupAccountButton(QPushButton* button, int index)
{
    SetButtonNoLine(button);
    SetButtonTextAlign(button, Qt::AlignLeft | Qt::AlignVCenter);
    setFontStyle(kFontSize, -1, button, false);
    QPalette palette = button->palette();
    palette.setColor(QPalette::ButtonText, Qt::white);
    button->setPalette(palette);

    tagAccountInfo info;
    phone_GetAccountInfoById(index, &info);
    const QString user = QString::fromUtf8(info.szUser);
    const QString identity = user + "@" + QString::fromUtf8(info.szServer);
    button->setText(user.isEmpty() ? QString("Account%1").arg(index + 1)
                                   : accountCutText(identity, kLongestText, kKeptText));
    accountSetStateIcon(button, info.eState);
}
