#pragma once
// One page of the engine in a widget that only shows: touches and keys go to what lies below.
// User-interface thread.
#include "host/widgets/webPanel.h"
#include <QObject>
#include <QTimer>
#include <QWebEnginePage>

class QWebEngineProfile;
class QWebEngineView;
class enginePage;

class enginePanel : public QObject, public webPanel
{
    Q_OBJECT
public:
    enginePanel(QWebEngineProfile* profile, QWidget* parent, tagWebPanelEvents events);
    ~enginePanel() override;
    QWidget* widget() override;
    bool setHtml(const QString& html) override;
    void setZoom(double factor) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void onEnd(QWebEnginePage::RenderProcessTerminationStatus status, int code);
    void onStuck();
    tagWebPanelEvents m_events;
    QWebEngineView* m_pView;
    enginePage* m_pPage;
    double m_fZoom = 1;
    QTimer m_stuck; // runs from setHtml until the page begins
};
