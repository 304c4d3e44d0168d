#pragma once
// The key files ("registry"): a file holds sections, a section holds keys, a value is one text line.
// Files are device paths. Sections and keys are found without regard to case. A read never fails: an
// absent file, section or key gives the caller's default. A write is on the disk, whole, when the call
// returns. Any thread.
#include "support/host/api.h"
#include "support/host/message.h"
#include "support/text/chString.h"
#include <QObject>

struct _HREGISTRY_;
// One section of one file. Kept for the life of the process, never closed; two calls with the same
// file and section give the same handle.
using HREGISTRY = _HREGISTRY_*;

enum { REGISTRY_BUFFER_SIZE = 256 };

// The value's leading decimal digits (with a sign); 0 when it does not start with any; def when absent.
HX_HOST_API int nuxGetRegistryInt(const char* file, const char* section, const char* key, int def);
// Copies the value, or def, into buffer, clipped to size with its terminator, never inside a character.
HX_HOST_API void nuxGetRegistryString(const char* file, const char* section, const char* key, char* buffer,
                                      const char* def, int size = REGISTRY_BUFFER_SIZE);
namespace NUX_SubClass {
HX_HOST_API chString nuxGetRegistryString(const char* file, const char* section, const char* key,
                                          const char* def);
}
// 1 when the value is stored; 0 when it could not be saved (the old file stays) or holds a line end.
HX_HOST_API int nuxSetRegistryInt(const char* file, const char* section, const char* key, int value);
HX_HOST_API int nuxSetRegistryString(const char* file, const char* section, const char* key,
                                     const char* value);

HX_HOST_API HREGISTRY registryOpen(const char* file, const char* section);
HX_HOST_API int registryGetInt(HREGISTRY handle, const char* key, int def);
HX_HOST_API chString registryGetString(HREGISTRY handle, const char* key, const char* def);
HX_HOST_API int registrySetString(HREGISTRY handle, const char* key, const char* value);

// Several keys of one section written as one save of the file. 1 when all are stored, else none is.
struct tagRegistryValue
{
    chString strKey;
    chString strValue;
};
HX_HOST_API int registrySetStrings(HREGISTRY handle, const tagRegistryValue* values, int count);

class RegistryWatch;
// Tells its owner, on the thread it was made on, when a watched section changed: by this process or
// by another one. A change that leaves every value of the section as it was is not told.
class HX_HOST_API qRegistryNotify : public QObject, public chMsgProcesser
{
    Q_OBJECT
public:
    explicit qRegistryNotify(QObject* parent = nullptr);
    ~qRegistryNotify() override;
    void MonitorSection(const char* file, const char* section);
    int TryThreadMessage(msgObject& msg) override;

signals:
    void registryChanged(HREGISTRY section);

protected:
    // Emits the signal.
    virtual void OnRegistryChanged(HREGISTRY section);

private:
    friend class RegistryWatch;
};
