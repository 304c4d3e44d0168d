#include "host/widgets/folderReading.h"
#include "support/file/findFile.h"
#include "support/text/chString.h"
#include <QString>
#include <algorithm>
#include <utility>

namespace {

// A text of the phone ends with a whole letter: a name that does not would become that of another file.
bool isWholeText(const std::string& name)
{
    return name == chString(name.c_str()).GetText();
}

} // namespace

struct FolderReading::Content
{
    bool Read();
    bool IsOfInterest(const tagDiskEntry& entry) const;
    void Sort();

    std::string folder;
    std::string filter;
    std::atomic<bool> isGivenUp{false};
    std::vector<tagDiskEntry> entries;
};

bool FolderReading::Content::Read()
{
    if (!diskListFolder(folder.c_str(), entries, &isGivenUp))
        return false;
    const auto end = std::remove_if(entries.begin(), entries.end(),
                                    [this](const tagDiskEntry& entry) { return !IsOfInterest(entry); });
    entries.erase(end, entries.end());
    Sort();
    return true;
}

bool FolderReading::Content::IsOfInterest(const tagDiskEntry& entry) const
{
    return entry.strName[0] != '.' && isWholeText(entry.strName) &&
           (entry.bFolder || pathMatchFilter(entry.strName.c_str(), filter.c_str()));
}

// As a person reads them: large and small letters are the same.
void FolderReading::Content::Sort()
{
    std::vector<std::pair<QString, size_t>> order;
    for (size_t i = 0; i < entries.size(); ++i)
        order.emplace_back(QString::fromStdString(entries[i].strName), i);
    std::sort(order.begin(), order.end(), [this](const auto& a, const auto& b) {
        const tagDiskEntry& first = entries[a.second];
        const tagDiskEntry& second = entries[b.second];
        if (first.bFolder != second.bFolder)
            return first.bFolder;
        const int compared = a.first.compare(b.first, Qt::CaseInsensitive);
        return compared ? compared < 0 : first.strName < second.strName;
    });
    std::vector<tagDiskEntry> sorted;
    for (const auto& [name, i] : order)
        sorted.push_back(std::move(entries[i]));
    entries.swap(sorted);
}

FolderReading::FolderReading(const QByteArray& folder, const QByteArray& filter)
    : m_content(std::make_shared<Content>())
{
    m_content->folder = folder.toStdString();
    m_content->filter = filter.toStdString();
    m_work = std::make_unique<chDiskWork>([content = m_content] { return content->Read() ? 1 : 0; });
}

FolderReading::~FolderReading()
{
    m_content->isGivenUp = true;
}

const std::vector<tagDiskEntry>& FolderReading::entries() const
{
    return m_content->entries;
}

void FolderReading::tell(std::function<void()> done)
{
    m_bell = std::make_unique<QObject>();
    m_work->Tell([bell = m_bell.get(), done = std::move(done)] {
        QMetaObject::invokeMethod(bell, done, Qt::QueuedConnection);
    });
}
