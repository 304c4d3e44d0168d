#pragma once

#include "support/text/nuxError.h"

#include <string>
#include <vector>

// Catches the reports of broken contracts while it lives; one at a time.
class errorLines
{
public:
    errorLines()
    {
        Lines().clear();
        nuxSetErrorSink([](const char* line) { Lines().push_back(line); });
    }
    ~errorLines() { nuxSetErrorSink(nullptr); }
    errorLines(const errorLines&) = delete;
    errorLines& operator=(const errorLines&) = delete;

    // The texts of the reports since the last call, without file and line, joined by " | ".
    std::string Take()
    {
        std::string all;
        for (const std::string& line : Lines()) {
            const size_t place = line.find(": ");
            all += (all.empty() ? "" : " | ") + (place == std::string::npos ? line : line.substr(place + 2));
        }
        Lines().clear();
        return all;
    }

    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> lines;
        return lines;
    }
};
