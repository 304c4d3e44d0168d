#pragma once
// Looks for the files of the signage folder that are not in use: fetched in part, or waiting for their use.
#include "support/host/task.h"
#include <string>
#include <vector>

class unusedFilesAction : public taskAction
{
public:
    int exec() override;
    // The name that a file which is fetched will have in use.
    static std::string nameOf(const std::string& name);

    std::vector<std::string> names;
};
