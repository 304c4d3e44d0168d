#pragma once
#include "support/xml/xmlAttributeNode.h"

// An element: a name, attributes, children.
class NUX_API xmlElement : public xmlAttributeNode
{
private:
    friend class xmlStorage;
    explicit xmlElement(xmlStorage* storage) : xmlAttributeNode(xmlTypeElement, storage) {}
    ~xmlElement() = default;
};
