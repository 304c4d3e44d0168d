#include "host/desktop/addressFetch.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include <string>

addressFetch::addressFetch(const char* file, size_t limit, Done done)
    : m_strFile(file), m_nLimit(limit), m_done(std::move(done))
{
}

addressFetch::~addressFetch() = default;

void addressFetch::start(const chString& url)
{
    chString folder = m_strFile;
    pathRemoveFileSpec(folder);
    pathMakeDirectories(folder);
    m_action = std::make_unique<HttpAction>();
    m_action->strRemoteUrl = url;
    m_action->strLocalFile = m_strFile;
    m_action->SetCallback(this);
    PostAction(*m_action);
}

void addressFetch::stop()
{
    m_action.reset();
}

void addressFetch::OnCallback(taskAction* action)
{
    if (!m_action || action != m_action.get())
        return;
    // The queue still holds the action, so it is only put away here.
    const std::unique_ptr<HttpAction> ended = std::move(m_action);
    std::string content;
    const bool good = ended->nResult && fileReadWhole(m_strFile, content, m_nLimit);
    fileRemove(m_strFile);
    m_done(good, QByteArray::fromStdString(content));
}
