#pragma once
// The rich-text engine, a library of its own beside the host's: nothing of it is in memory before the first
// text, or before somebody has time to warm it. User-interface thread.
#include "host/widgets/webPanel.h"
#include <QLibrary>
#include <QObject>
#include <memory>

class webPlugin : public QObject
{
    Q_OBJECT
public:
    enum STATE { IDLE, LOADING, READY, MISSING };

    // The one plugin; lives until the process ends.
    static webPlugin& instance();
    // For a host that keeps it elsewhere; before the first load.
    void setFile(const QString& file) { m_strFile = file; }
    // For a host that has less to spare; from the next text on.
    void setBudget(const tagTextBudget& budget) { m_budget = budget; }
    STATE state() const { return m_eState; }
    // Begins to load, on a thread of its own; finished() tells the end of it. Later calls do nothing.
    void load();
    // Null unless it is READY, or when the engine does not start.
    webPanel* makePanel(QWidget* parent, tagWebPanelEvents events) const;

    // The next piece of what the first text would wait for: the library, the engine, a page, a text in it.
    // Each holds the thread up for a moment, or goes on elsewhere. False when there is nothing left to do.
    bool warmStep();
    bool isWarm() const { return m_eWarmth == WARM; }

signals:
    void finished();
    void warmed();
    void cooled(); // the process that was to draw the first text has ended

private:
    enum WARMTH { COLD, STARTED, PAGE, TEXT, WARM };
    webPlugin();
    void take();
    void startEngine();
    void makeKeeper();
    void onKept();
    void onKeeperDied();
    QString m_strFile;
    tagTextBudget m_budget;
    QLibrary m_library;
    webStartEntry m_pStart = nullptr;
    webPanelEntry m_pEntry = nullptr;
    std::unique_ptr<webPanel> m_keeper; // an empty page that nobody sees; keeps the process that draws
    STATE m_eState = IDLE;
    WARMTH m_eWarmth = COLD;
};
