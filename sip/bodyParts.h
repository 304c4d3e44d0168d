#pragma once
// The parts of a body that has several (RFC 2046, RFC 2387).
#include <cstddef>
#include <string>
#include <vector>

struct tagBodyPart
{
    std::string type;            // "application/rlmi+xml", in small letters, without its parameters
    std::string boundary;        // of one that has parts itself
    std::string id;              // without its brackets; empty: none
    std::string disposition;     // "session", in small letters, without its parameters; empty: it says none
    bool bOptional = false;      // so it says: whoever does not know it may leave it out (RFC 3261, 20.11)
    bool bCoded = false;         // its bytes are not what it is, in a way that is not read here
    bool bBase64 = false;        // nor are these (RFC 2045), which are: plainBytes()
    const char* bytes = nullptr; // within the body
    size_t nSize = 0;
};

namespace bodyParts {

enum : size_t { PARTS_MAX = 320 };

// A parameter of a content type, without its quotes; empty where there is none.
std::string param(const std::string& contentType, const std::string& name);
// Without its parameters, in small letters.
std::string bareType(const std::string& contentType);
// What a header says of a part; value: without blanks around it.
void setType(const std::string& value, tagBodyPart& part);
void setDisposition(const std::string& value, tagBodyPart& part);
// What the bytes of a part stand for.
std::string plainBytes(const tagBodyPart& part);
// False for what is damaged: nothing of it is of use then.
bool split(const char* bytes, size_t size, const std::string& boundary, std::vector<tagBodyPart>& parts);

} // namespace bodyParts
