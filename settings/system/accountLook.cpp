#include "settings/system/accountLook.h"
#include "support/host/button.h"

void accountSetStateIcon(QPushButton* button, LINE_STATE state)
{
    switch (state) {
    case LINE_DISABLED:
    case LINE_REGISTER_FAILED:
    case LINE_UNREGISTERED:
        SetButtonIcon(button, HX_THEME("icon/btn_dss_fg03.png"));
        break;
    case LINE_REGISTERED:
    case LINE_DEFAULT_ACCOUNT:
        SetButtonIcon(button, HX_THEME("icon/btn_dss_fg02.png"));
        break;
    default:
        break;
    }
}

QString accountCutText(const QString& text, int limit, int kept)
{
    if (text.size() <= limit)
        return text;
    // A character outside the basic plane has two units; both stay or both go.
    if (kept < text.size() && text.at(kept).isLowSurrogate())
        --kept;
    return text.left(kept) + "...";
}
