#pragma once
// Changes keys of a key file, so that writers in other threads and processes lose nothing. Any thread.
#include <string_view>
#include <utility>
#include <vector>

using KeyValues = std::vector<std::pair<std::string_view, std::string_view>>;

// Under a lock that all writers take, reads the file, changes these keys of the section and saves it whole.
// 1 when all are stored; 0 when one cannot be, or the file cannot be saved: then none is, and the old file
// stays. A file that cannot be understood is kept aside first.
int keyFileWrite(const char* path, std::string_view section, const KeyValues& values);
