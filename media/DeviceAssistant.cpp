#include "media/DeviceAssistant.h"
#include "support/host/storage.h"

namespace {

const char* const kStorages = "/storage";

} // namespace

DeviceAssistant::DeviceAssistant(chMsgProcesser* processer) : m_pProcesser(processer)
{
    Register(kStorages);
    GetFileArrayInStorage(m_arrStorage);
    for (const chString& path : m_arrStorage)
        Register(path);
}

DeviceAssistant::~DeviceAssistant()
{
    UnRegister(kStorages);
    for (const chString& path : m_arrStorage)
        UnRegister(path);
}

void DeviceAssistant::Register(const char* path)
{
    device_RegisterNotify(m_pProcesser, path);
}

void DeviceAssistant::UnRegister(const char* path)
{
    device_UnRegisterNotify(m_pProcesser, path);
}

// A storage that took the place of another is heard through "/storage".
void DeviceAssistant::Refresh()
{
    chStringArray now;
    GetFileArrayInStorage(now);
    if (now.GetSize() > m_arrStorage.GetSize()) {
        for (const chString& path : now) {
            if (!IsFileInArray(path, m_arrStorage))
                Register(path);
        }
    } else {
        for (const chString& path : m_arrStorage) {
            if (!IsFileInArray(path, now))
                UnRegister(path);
        }
    }
    m_arrStorage = now;
}
