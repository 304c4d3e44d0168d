#include "support/host/module.h"

namespace {

tagModuleEntries& theEntries()
{
    static tagModuleEntries entries;
    return entries;
}

} // namespace

void hostSetModule(const tagModuleEntries& entries)
{
    theEntries() = entries;
}

const tagModuleEntries& hostModule()
{
    return theEntries();
}
