#pragma once
// What the rich-text plugin offers: one page of the engine in a widget. User-interface thread.
#include <QString>
#include <functional>

class QWidget;

class webPanel
{
public:
    virtual ~webPanel() = default; // takes its widget down
    virtual QWidget* widget() = 0;
    // False when the text cannot be shown at all, because of its size. An empty text ends the one before.
    virtual bool setHtml(const QString& html) = 0;
    virtual void setZoom(double factor) = 0; // as QWebView
};

// What a panel tells. They may come from inside the engine: the panel must not be deleted by them.
struct tagWebPanelEvents
{
    std::function<void()> begun;          // the new text has taken the place of the one before
    std::function<void(bool ok)> loaded;  // it is laid out, or cannot be
    std::function<void()> died;           // the process that drew it is gone; setHtml starts another
    std::function<void(const char*)> say; // a line for the phone's log
};

// The plugin's entry, by the name kWebPanelEntry. The panel is the caller's, its widget a child of parent;
// null when the engine cannot be started.
using webPanelEntry = webPanel* (*)(QWidget* parent, const tagWebPanelEvents& events);
inline constexpr char kWebPanelEntry[] = "hxWebMakePanel";
