#pragma once
// XML that comes from the network, as a tree. A document type is refused, and with it every entity but the
// five of the language; depth, nodes and lengths are bounded.
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

struct tagXmlNode
{
    std::string name; // without its prefix
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text; // all of it, without what its children have
    std::vector<tagXmlNode> children;

    // Empty where there is none.
    std::string attribute(const char* wanted) const;
    // The first one; null where there is none.
    const tagXmlNode* child(const char* wanted) const;
    std::string childText(const char* wanted) const;
};

namespace boundedXml {

enum : size_t {
    BYTES_MAX = 128 << 10,
    DEPTH_MAX = 16,
    NODES_MAX = 8192,
    ATTRIBUTES_MAX = 16,
    TEXT_MAX = 512
};

// False when it is damaged, or beyond the bounds.
bool read(const char* bytes, size_t size, tagXmlNode& root);
// Of a text within: without blanks around it.
std::string trimmed(const std::string& text);

} // namespace boundedXml
