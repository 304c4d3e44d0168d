#pragma once
// Saves the list of the signage folder away from the user-interface thread. Changes that come together share
// one save; saves follow each other in order. User-interface thread.
#include "support/host/task.h"
#include <functional>
#include <string>

class nDeckListSaver : public ActionCallback
{
public:
    enum : int { PAUSE_MS = 2000 }; // between two saves, while change follows change

    // text: what to save, asked for when a save begins.
    explicit nDeckListSaver(std::function<std::string()> text);
    // The list changed. bFiles: it speaks of files that no power loss may take away any more.
    void Touch(bool bFiles);
    // Makes the file say what the list says now, for the case that the phone is killed; a save that is also
    // safe from a loss of power follows by itself.
    void StoreNow();
    // Whether the file says less than the list, because a save is still to come or the last one failed.
    bool IsBehind() const { return m_bBusy || m_bFailed; }
    void OnCallback(taskAction* action) override;

private:
    int OnPauseOver(msgObject& msg);
    void Begin();

    std::function<std::string()> m_text;
    chThreadTimer m_pause;
    unsigned int m_nTurn = 0; // of the last text
    bool m_bChanged = false;
    bool m_bFiles = false;
    bool m_bBusy = false; // a save is coming or under way
    bool m_bFailed = false;
};
