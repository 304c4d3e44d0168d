#pragma once
// A delayed preview of the file that is selected in a list: who runs fast through the list starts none.
// User-interface thread.
#include "support/text/chString.h"
#include <QObject>
#include <cstdint>

enum PREVIEW_MEDIA_TYPE { PREVIEW_IMAGE = 0, PREVIEW_VIDEO = 1, PREVIEW_SOUND = 2 };

class basePreview : public QObject
{
    Q_OBJECT
public:
    enum : int32_t { NO_TIMER = -1 };

    // delay: milliseconds until the preview begins; 0: at once.
    basePreview(QObject* parent, int delay, PREVIEW_MEDIA_TYPE type);

    // file: device path. One that is under preview goes on. Answers 1.
    int startPreview(const chString& file);
    void stopPreview();

    // bStill: the preview that begins by itself within the page, and not the one that a person asked for.
    virtual void on_start_preview(bool bStill) = 0;
    virtual void on_stop_preview();

    void SetDelay(int delay) { m_nDelay = delay; }
    int GetDelay() const { return m_nDelay; }
    PREVIEW_MEDIA_TYPE GetType() const { return m_eType; }
    const chString& GetFile() const { return m_strFile; }
    bool IsActive() const { return m_bActive != 0; }

protected:
    void timerEvent(QTimerEvent* event) override;
    // By a preview that begins on demand: stopPreview() ends it, as one that began by itself.
    void SetActive() { m_bActive = 1; }
    void KillTimer();

private:
    int32_t m_nTimerId = NO_TIMER;
    int32_t m_nDelay;
    chString m_strFile;
    int32_t m_bActive = 0;
    PREVIEW_MEDIA_TYPE m_eType;
};
