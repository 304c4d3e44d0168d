#include "settings/system/adminPassword.h"
#include "frame/configFiles.h"
#include "frame/wgtHelper.h"
#include "support/host/ime.h"
#include "support/host/registry.h"
#include <QLineEdit>
#include <cstring>

namespace {

const char* const kMethods[] = {"123", "abc", "ABC", "2aB"};
const char* const kFirstMethod = "2aB";

} // namespace

chString adminInputMethod()
{
    const chString stored =
        NUX_SubClass::nuxGetRegistryString(USER_INI, "DefaultIme", "strSecurity", kFirstMethod);
    for (const char* method : kMethods) {
        if (stored == method)
            return stored;
    }
    return chString(kFirstMethod);
}

void adminSetupEdit(QLineEdit* edit)
{
    setupPasswordEdit(edit);
    qInstallIME(edit, "2aB,ABC,abc,123");
}
