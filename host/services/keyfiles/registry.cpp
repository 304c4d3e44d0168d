#include "support/host/registry.h"
#include "host/services/keyfiles/keyFileWriter.h"
#include "host/services/keyfiles/registryHandle.h"
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <deque>

namespace {

std::string_view textOf(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

int leadingNumber(const std::string& value)
{
    size_t i = value.find_first_not_of(" \t");
    if (i == std::string::npos)
        return 0;
    const bool negative = value[i] == '-';
    if (value[i] == '-' || value[i] == '+')
        ++i;
    long long number = 0;
    for (; i < value.size() && value[i] >= '0' && value[i] <= '9' && number <= INT_MAX; ++i)
        number = number * 10 + (value[i] - '0');
    number = negative ? -number : number;
    return static_cast<int>(std::clamp<long long>(number, INT_MIN, INT_MAX));
}

void copyClipped(char* buffer, int size, const char* text, size_t length)
{
    const size_t room = static_cast<size_t>(size) - 1;
    if (length > room) {
        length = room;
        while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
    }
    memmove(buffer, text, length);
    buffer[length] = 0;
}

struct HandleTable
{
    std::mutex lock;
    std::map<std::string, _HREGISTRY_*> handles; // by file, a line end, and the section in lower case
    std::deque<_HREGISTRY_> store;
};

HandleTable& handleTable()
{
    static HandleTable* table = new HandleTable;
    return *table;
}

std::string handleName(std::string_view file, std::string_view section)
{
    std::string name(section);
    for (char& c : name)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    return std::string(file) + '\n' + name;
}

template <class TAKE>
auto readValue(HREGISTRY handle, const char* key, TAKE take)
{
    return handle ? keyFileCache::GetInstance().Read(*handle->pSlot, handle->nHash, handle->strSection,
                                                     textOf(key), take)
                  : take(static_cast<const std::string*>(nullptr));
}

bool isStored(KeyFileSave result)
{
    return result == KeyFileSave::Stored;
}

chString stringOf(const std::string* value, const char* def)
{
    return value ? chString(value->data(), static_cast<int>(value->size())) : chString(def);
}

} // namespace

int nuxGetRegistryInt(const char* file, const char* section, const char* key, int def)
{
    return keyFileCache::GetInstance().Read(
        textOf(file), textOf(section), textOf(key),
        [def](const std::string* value) { return value ? leadingNumber(*value) : def; });
}

void nuxGetRegistryString(const char* file, const char* section, const char* key, char* buffer,
                          const char* def, int size)
{
    if (!buffer || size <= 0)
        return;
    keyFileCache::GetInstance().Read(
        textOf(file), textOf(section), textOf(key), [=](const std::string* value) {
            const std::string_view text = value ? std::string_view(*value) : textOf(def);
            copyClipped(buffer, size, text.data() ? text.data() : "", text.size());
        });
}

chString NUX_SubClass::nuxGetRegistryString(const char* file, const char* section, const char* key,
                                            const char* def)
{
    return keyFileCache::GetInstance().Read(textOf(file), textOf(section), textOf(key),
                                            [def](const std::string* value) { return stringOf(value, def); });
}

int nuxSetRegistryInt(const char* file, const char* section, const char* key, int value)
{
    return nuxSetRegistryString(file, section, key, std::to_string(value).c_str());
}

int nuxSetRegistryString(const char* file, const char* section, const char* key, const char* value)
{
    return file && isStored(keyFileWrite(file, textOf(section), {{textOf(key), textOf(value)}}));
}

HREGISTRY registryOpen(const char* file, const char* section)
{
    HandleTable& table = handleTable();
    const std::string name = handleName(textOf(file), textOf(section));
    std::lock_guard<std::mutex> guard(table.lock);
    HREGISTRY& handle = table.handles[name];
    if (!handle) {
        table.store.push_back({keyFileCache::GetInstance().Open(textOf(file)), std::string(textOf(section)),
                               keyFile::HashSection(textOf(section))});
        handle = &table.store.back();
    }
    return handle;
}

int registryGetInt(HREGISTRY handle, const char* key, int def)
{
    return readValue(handle, key,
                     [def](const std::string* value) { return value ? leadingNumber(*value) : def; });
}

chString registryGetString(HREGISTRY handle, const char* key, const char* def)
{
    return readValue(handle, key, [def](const std::string* value) { return stringOf(value, def); });
}

int registrySetString(HREGISTRY handle, const char* key, const char* value)
{
    return handle && isStored(keyFileWrite(handle->pSlot->path.c_str(), handle->strSection,
                                           {{textOf(key), textOf(value)}}));
}

int registrySetStrings(HREGISTRY handle, const tagRegistryValue* values, int count)
{
    if (!handle || count < 0 || (count > 0 && !values))
        return 0;
    KeyValues pairs;
    for (int i = 0; i < count; ++i)
        pairs.emplace_back(textOf(values[i].strKey), textOf(values[i].strValue));
    return isStored(keyFileWrite(handle->pSlot->path.c_str(), handle->strSection, pairs));
}
