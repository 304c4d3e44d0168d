#pragma once
// The rich-text engine, a library of its own beside the host's: nothing of it is in memory before the first
// text. User-interface thread.
#include "host/widgets/webPanel.h"
#include <QLibrary>
#include <QObject>

class webPlugin : public QObject
{
    Q_OBJECT
public:
    enum STATE { IDLE, LOADING, READY, MISSING };

    // The one plugin; lives until the process ends.
    static webPlugin& instance();
    // For a host that keeps it elsewhere; before the first load.
    void setFile(const QString& file) { m_strFile = file; }
    STATE state() const { return m_eState; }
    // Begins to load, on a thread of its own; finished() tells the end of it. Later calls do nothing.
    void load();
    // Null unless it is READY, or when the engine does not start.
    webPanel* makePanel(QWidget* parent, const tagWebPanelEvents& events) const;

signals:
    void finished();

private:
    webPlugin();
    void take();
    QString m_strFile;
    QLibrary m_library;
    webPanelEntry m_pEntry = nullptr;
    STATE m_eState = IDLE;
};
