#include "signage/nDeckListSaver.h"
#include "signage/nDeckFolder.h"
#include "support/file/chAtomicFile.h"
#include "support/file/fileTools.h"
#include "support/host/createObject.h"
#include "support/host/trace.h"
#include <mutex>

namespace {

// An older text never takes the place of a newer one.
std::mutex g_storing;
unsigned int g_nStored = 0; // turn of the text that the file holds

class saveAction : public taskAction
{
public:
    // The files come first: a record never says more than the disk holds.
    int exec() override
    {
        chAtomicFile file;
        bSaved = (!bFiles || fileFlushFolder(NDECK_FOLDER)) && file.Open(NDECK_LIST) &&
                 file.Write(text.data(), text.size()) && file.Flush() && Store(file) && file.FlushFolder();
        if (!bSaved)
            nuxTrace(TRACE_NOTE, "the list of the signage files cannot be saved");
        return 1;
    }
    std::string text;
    unsigned int nTurn = 0;
    bool bFiles = false;
    bool bSaved = false;

private:
    // Nothing slow happens here: the user interface may be about to store a newer text.
    bool Store(chAtomicFile& file) const
    {
        const std::lock_guard<std::mutex> lock(g_storing);
        if (nTurn < g_nStored)
            return true;
        g_nStored = nTurn;
        return file.Commit(0) != 0;
    }
};

} // namespace

nDeckListSaver::nDeckListSaver(std::function<std::string()> text) : m_text(std::move(text)) {}

void nDeckListSaver::Touch(bool bFiles)
{
    m_bChanged = true;
    m_bFiles = m_bFiles || bFiles;
    if (m_bBusy)
        return;
    m_bBusy = true;
    Callback(nullptr); // when this turn is over
}

void nDeckListSaver::StoreNow()
{
    nDeckMakeFolder();
    const std::string text = m_text();
    const std::lock_guard<std::mutex> lock(g_storing);
    chAtomicFile file;
    g_nStored = ++m_nTurn;
    if (!file.Open(NDECK_LIST) || !file.Write(text.data(), text.size()) || !file.Commit(0))
        nuxTrace(TRACE_NOTE, "the list of the signage files cannot be saved");
}

void nDeckListSaver::OnCallback(taskAction* action)
{
    const saveAction* save = dynamic_cast<saveAction*>(action);
    if (!save) {
        Begin();
        return;
    }
    m_bFailed = !save->bSaved;
    m_bFiles = m_bFiles || (m_bFailed && save->bFiles);
    m_bBusy = m_bChanged;
    if (m_bChanged)
        m_pause.SetTimer(PAUSE_MS, nullptr, this, &nDeckListSaver::OnPauseOver);
}

int nDeckListSaver::OnPauseOver(msgObject&)
{
    m_pause.KillTimer();
    Begin();
    return 1;
}

void nDeckListSaver::Begin()
{
    nDeckMakeFolder();
    saveAction& action = CreateObject<saveAction>();
    action.text = m_text();
    action.nTurn = ++m_nTurn;
    action.bFiles = m_bFiles;
    m_bChanged = m_bFiles = false;
    action.SetCallback(this);
    PostAction(action);
    action.Release();
}
