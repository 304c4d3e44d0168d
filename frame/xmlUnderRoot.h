#pragma once
// The element of that name under the document's root; null when there is none. The phone's own files stand
// in one root element, files of older phones have their sections at document level.
#include "support/xml/xmlFile.h"

inline xmlElement* xmlFindUnderRoot(const xmlDocument& document, const char* name)
{
    if (xmlElement* element = xmlFindElementFromRoot(&document, name))
        return element;
    return xmlFindElementFromRoot(document.GetRootElement(), name);
}
