#pragma once
// What the players of films share: a surface over the whole screen, which is given up when the dialog closes,
// whoever closes it. User-interface thread.
#include "media/fullScreenDialog.h"

class videoAssistant;

class VideoDialog : public FullScreenDialog
{
    Q_OBJECT
public:
    void Destruct() override;

protected:
    // mute: of the output while it plays, 0 or 1.
    explicit VideoDialog(int mute);
    videoAssistant& Video() const { return *m_pVideo; }
    // What the keys of a player do; false for any other key.
    bool TryPlayerKey(int key);
    void closeEvent(QCloseEvent* event) override;

private:
    videoAssistant* m_pVideo;
};
