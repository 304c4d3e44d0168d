#include "host/services/system/thisDevice.h"
#include "support/file/deviceRoot.h"
#include "support/file/path.h"

bool isThisDevice()
{
    return deviceGetRoot().IsEmpty() && pathFileExist("/phone/resource/version.ini");
}
