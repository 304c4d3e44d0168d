#pragma once
// The parts of a body that has several (RFC 2046, RFC 2387).
#include <cstddef>
#include <string>
#include <vector>

struct tagBodyPart
{
    std::string type;            // "application/rlmi+xml", in small letters, without its parameters
    std::string id;              // without its brackets; empty: none
    const char* bytes = nullptr; // within the body
    size_t nSize = 0;
};

namespace bodyParts {

enum : size_t { PARTS_MAX = 320 };

// A parameter of a content type, without its quotes; empty where there is none.
std::string param(const std::string& contentType, const std::string& name);
// Without its parameters, in small letters.
std::string bareType(const std::string& contentType);
// False for what is damaged: nothing of it is of use then.
bool split(const char* bytes, size_t size, const std::string& boundary, std::vector<tagBodyPart>& parts);

} // namespace bodyParts
