#pragma once
// One page of the engine in a widget that only shows: touches and keys go to what lies below.
// User-interface thread.
#include "host/widgets/webPanel.h"
#include <QObject>
#include <QTimer>
#include <QWebEnginePage>
#include <sys/types.h>

class QWebEngineView;
class enginePage;
struct tagEngine;

class enginePanel : public QObject, public webPanel
{
    Q_OBJECT
public:
    enginePanel(const tagEngine& engine, QWidget* parent, tagWebPanelEvents events);
    ~enginePanel() override;
    QWidget* widget() override;
    bool setHtml(const QString& html) override;
    void setZoom(double factor) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum : int { NOT_ENDED = -1 };
    bool mayShow(const QString& html) const;
    void load();
    void onBegun();
    bool mayTryAgain() const;
    void onEnding(pid_t process, int reason);
    void onEnd(QWebEnginePage::RenderProcessTerminationStatus status, int code);
    void onStuck();
    const tagEngine& m_engine;
    tagWebPanelEvents m_events;
    QWebEngineView* m_pView;
    enginePage* m_pPage;
    QString m_strHtml;
    double m_fZoom = 1;
    QTimer m_stuck;        // runs from a text until it begins
    pid_t m_nProcess = 0;  // that it began in
    bool m_bBegun = false; // the text has taken the place of the one before
    bool m_bTriedAgain = false;
    int m_nEnding = NOT_ENDED; // why its process is being ended
};
