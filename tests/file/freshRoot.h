#pragma once
// A device root of its own for each test.
#include "support/file/deviceRoot.h"
#include "support/text/nuxError.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <fstream>
#include <ftw.h>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

class FreshRoot : public testing::Test
{
protected:
    FreshRoot()
    {
        char name[] = "/tmp/hxRootXXXXXX";
        m_root = mkdtemp(name);
        deviceSetRoot(m_root.c_str());
    }
    ~FreshRoot() override
    {
        deviceSetRoot(nullptr);
        const auto removeOne = [](const char* path, const struct stat*, int, struct FTW*) {
            return remove(path);
        };
        nftw(m_root.c_str(), removeOne, 16, FTW_DEPTH | FTW_PHYS);
    }

    std::string onMachine(const std::string& path) const { return m_root + path; }

    void makeFolder(const std::string& path) const
    {
        ASSERT_EQ(mkdir(onMachine(path).c_str(), 0755), 0) << path;
    }
    void put(const std::string& path, const std::string& content) const
    {
        std::ofstream(onMachine(path), std::ios::binary) << content;
    }
    std::string get(const std::string& path) const
    {
        std::ifstream file(onMachine(path), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    bool isThere(const std::string& path) const
    {
        struct stat info;
        return lstat(onMachine(path).c_str(), &info) == 0;
    }
    // Names in a folder, hidden ones too, in order.
    std::vector<std::string> namesIn(const std::string& path) const
    {
        std::vector<std::string> names;
        struct dirent** entries = nullptr;
        const int count = scandir(onMachine(path).c_str(), &entries, nullptr, alphasort);
        for (int i = 0; i < count; ++i) {
            const std::string name = entries[i]->d_name;
            if (name != "." && name != "..")
                names.push_back(name);
            free(entries[i]);
        }
        free(entries);
        return names;
    }

private:
    std::string m_root;
};
