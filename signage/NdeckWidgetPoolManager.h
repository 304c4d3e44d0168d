#pragma once
// The widgets of the show. Some are dear to make, and layouts change every few seconds: what is given back
// waits here for the next one who wants its kind. User-interface thread.
#include "support/container/chList.h"

class QWidget;

struct tagNdeckWidget
{
    QWidget* pWidget = nullptr;
    int nReleases = 0; // how often it came back
    bool bInUse = false;
};

class NdeckWidgetPoolManager
{
public:
    // The first free widget that fits, in use from now on; null when there is none.
    QWidget* Take(bool (*fits)(QWidget* widget));
    // A new widget, in use. The pool owns it.
    void Add(QWidget* widget);
    // Back to the pool, without a parent. A widget of somebody else only loses its parent.
    void DestroyWidget(QWidget* widget);
    // The pool's end: free widgets are deleted, all records go.
    void ClearWidget();

    int GetCount() const { return m_list.size(); }
    int GetInUseCount() const;
    // Null when the widget is not the pool's.
    const tagNdeckWidget* Find(const QWidget* widget) const;

private:
    chObjList_dynamic<tagNdeckWidget, 16> m_list;
};

NdeckWidgetPoolManager& GetNdeckWidgetPoolManager();
