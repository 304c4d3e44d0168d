#include "host/desktop/directorySearch.h"
#include "host/desktop/ldapCopySearch.h"

namespace {

std::unique_ptr<directorySearch>& theSearch()
{
    static auto* search = new std::unique_ptr<directorySearch>(new ldapCopySearch);
    return *search;
}

} // namespace

void directorySearchSet(std::unique_ptr<directorySearch> search)
{
    theSearch() = std::move(search);
}

directorySearch& directorySearchGet()
{
    return *theSearch();
}
