#include "signage/nDeckLaterTries.h"
#include "signage/nDeckFolder.h"
#include <algorithm>
#include <vector>

nDeckLaterTries::nDeckLaterTries(AskCall ask) : m_ask(std::move(ask)) {}

void nDeckLaterTries::Add(const _nDeckFileNode& wanted)
{
    tagFile& file = m_files[nDeckPlainName(wanted.path).GetText()];
    const bool isAnother = file.wanted.md5 != wanted.md5;
    file.nPause = isAnother || !file.nPause ? FIRST_PAUSE : std::min<int>(2 * file.nPause, LONGEST_PAUSE);
    file.nLeft = file.nPause + 1; // the tick under way is no whole one
    file.wanted = wanted;
    if (m_bTicking)
        return;
    m_bTicking = true;
    m_timer.SetTimer(TICK_MS, nullptr, this, &nDeckLaterTries::OnTick);
}

void nDeckLaterTries::Forget(const chString& name)
{
    m_files.erase(name.GetText());
}

void nDeckLaterTries::KeepOnly(const nDeckNameSet& contents)
{
    for (auto file = m_files.begin(); file != m_files.end();) {
        const _nDeckFileNode& wanted = file->second.wanted;
        const bool isWanted = contents.count(frameContent(nDeckPlainName(wanted.path), wanted.md5)) != 0;
        file = isWanted ? std::next(file) : m_files.erase(file);
    }
}

int nDeckLaterTries::OnTick(msgObject&)
{
    std::vector<_nDeckFileNode> due;
    for (auto& [name, file] : m_files) {
        if (file.nLeft > 0 && --file.nLeft == 0)
            due.push_back(file.wanted);
    }
    if (m_files.empty()) {
        m_timer.KillTimer();
        m_bTicking = false;
    }
    for (const _nDeckFileNode& wanted : due)
        m_ask(wanted);
    return 1;
}
