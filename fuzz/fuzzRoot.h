#pragma once
// What the fuzz targets share: an expectation that stops the run, and a folder of the process's own that
// stands for the device.
#include "support/file/deviceRoot.h"
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

inline void expect(bool condition)
{
    if (!condition)
        abort();
}

class FuzzRoot
{
public:
    FuzzRoot()
    {
        expect(mkdtemp(m_folder.data()) != nullptr);
        deviceSetRoot(m_folder.c_str());
    }
    ~FuzzRoot() { std::filesystem::remove_all(m_folder); }

private:
    std::string m_folder = (std::filesystem::temp_directory_path() / "hxFuzzXXXXXX").string();
};
