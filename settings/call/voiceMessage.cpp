#include "settings/call/voiceMessage.h"
#include "frame/configFiles.h"
#include "frame/pageClass.h"
#include "frame/popupDialog.h"
#include "settings/call/accountMail.h"
#include "settings/call/dlgVoice_Mail_Setting.h"
#include "support/host/phone.h"
#include "support/host/registry.h"

HX_PAGE_OF_ANOTHER_FILE(dlgVoice_Mail_Setting);

namespace {

enum { CALL_FROM_MESSAGE_KEY = -2 };

} // namespace

// Accounts that have messages and no number, or neither, are no different: they all lead to the page.
int DoVoiceMessageDialOut()
{
    for (int account = 0; account < PHONE_ACCOUNT_COUNT; ++account) {
        tagAccountInfo info;
        phone_GetAccountInfoById(account, &info);
        if (!AccountMail::IsRegistered(info))
            continue;
        // The section as this has always spelled it, unlike the page.
        const chString number = NUX_SubClass::nuxGetRegistryString(
            fmtString("%s%d.cfg", SIP_ACCOUNT_FILE, account), "Account", "VoiceMail", "");
        if (!number.IsEmpty() && info.nNewMessages != 0) {
            phone_CallNumber(number, account, CALL_FROM_MESSAGE_KEY);
            return 0;
        }
    }
    PopupDialog<dlgVoice_Mail_Setting>(nullptr, 1, 1, 0);
    return 0;
}
