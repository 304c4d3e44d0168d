#include "signage/nDeckSweeper.h"
#include "signage/nDeckFetcher.h"
#include "signage/nDeckFileBook.h"
#include "signage/nDeckFolder.h"
#include "signage/unusedFilesAction.h"
#include "support/file/fileTools.h"
#include "support/host/createObject.h"

void nDeckSweeper::Begin()
{
    unusedFilesAction& action = CreateObject<unusedFilesAction>();
    action.SetCallback(this);
    PostAction(action);
    action.Release();
}

void nDeckSweeper::OnCallback(taskAction* action)
{
    const auto* unused = dynamic_cast<const unusedFilesAction*>(action);
    if (!unused)
        return;
    for (const std::string& name : unused->names) {
        if (!IsNeeded(name))
            fileRemove(nDeckPath(name.c_str()));
    }
}

bool nDeckSweeper::IsNeeded(const std::string& name) const
{
    const chString path = name.c_str();
    if (m_book.Find(path) || path == NDECK_SCHEDULE NDECK_WAITING)
        return true;
    return !nDeckHasSuffix(path, NDECK_WAITING) && m_fetcher.IsAwaited(unusedFilesAction::nameOf(name));
}
