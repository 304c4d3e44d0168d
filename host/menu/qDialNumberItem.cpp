#include "support/host/dialitem.h"
#include "support/host/phone.h"
#include "support/host/registry.h"

namespace {

const char* const kFile = "/rundata/config/user/user.ini";
const char* const kSection = "DialNumber";

} // namespace

qDialNumberItem::qDialNumberItem(const chString& key, QObject* parent) : QObject(parent), m_strKey(key) {}

chString qDialNumberItem::PhoneNumber() const
{
    return NUX_SubClass::nuxGetRegistryString(kFile, kSection, m_strKey, "");
}

int qDialNumberItem::SavePhoneNumber(const chString& number)
{
    return nuxSetRegistryString(kFile, kSection, m_strKey, number);
}

void qDialNumberItem::Call() const
{
    phone_CallNumber(PhoneNumber(), -1, 0);
}
