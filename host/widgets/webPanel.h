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
    // False when the text cannot be shown at all: because of its size, or since it took too much before. An
    // empty text ends the one before.
    virtual bool setHtml(const QString& html) = 0;
    virtual void setZoom(double factor) = 0; // as QWebView
};

// What all texts together may take of one processor, and save up of what they do not take: a text that is
// long to lay out is not ended.
struct tagTextBudget
{
    int nSharePercent = 60;
    int nSavedMs = 6000;
};

// What a panel tells and asks. They may come from inside the engine: the panel must not be deleted by them.
struct tagWebPanelEvents
{
    std::function<void()> begun;          // the new text has taken the place of the one before
    std::function<void(bool ok)> loaded;  // it is laid out, or cannot be
    std::function<void()> died;           // the process that drew it is gone; setHtml starts another
    std::function<void(const char*)> say; // a line for the phone's log
    std::function<QString()> server;      // the address of the signage server
    tagTextBudget budget;                 // of the engine from this panel on
};

// The plugin's entries, by these names. Start: the engine without a panel; false when it cannot be. Panel:
// the panel is the caller's, its widget a child of parent; null when the engine cannot be started.
using webStartEntry = bool (*)(const tagWebPanelEvents& events);
inline constexpr char kWebStartEntry[] = "hxWebStart";
using webPanelEntry = webPanel* (*)(QWidget* parent, const tagWebPanelEvents& events);
inline constexpr char kWebPanelEntry[] = "hxWebMakePanel";
