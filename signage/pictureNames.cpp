#include "signage/pictureNames.h"
#include "support/file/path.h"
#include <algorithm>
#include <strings.h>

bool hasExtension(const char* path, std::initializer_list<const char*> upperCase)
{
    const char* extension = pathGetFileExtensionPos(path);
    return std::any_of(upperCase.begin(), upperCase.end(),
                       [extension](const char* one) { return strcasecmp(extension, one) == 0; });
}
