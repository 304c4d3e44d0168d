#pragma once
// A page with one tab a line. User-interface thread.
#include "support/host/api.h"
#include <QList>
#include <QWidget>

class QStackedWidget;
class QTabWidget;

class HX_HOST_API qLineBodyWidget : public QWidget
{
    Q_OBJECT
public:
    explicit qLineBodyWidget(QWidget* parent = nullptr);
    // Binds the page to line 0 to 3 and fills it.
    virtual void LoadLineInfo(int line);
    // Null when the input is good; else the widget with the bad input, and message is the English text.
    virtual QWidget* GetInvalidInput(QString& message);
    // Writes the page; true when something changed.
    virtual bool SaveLineInfo();
};

class HX_HOST_API qLinePages : public QWidget
{
    Q_OBJECT
public:
    explicit qLinePages(QWidget* parent = nullptr);
    // Takes ownership of page.
    void AddLinePage(qLineBodyWidget* page, const QString& title);
    void ResetCurrentWgtPage(int index);
    qLineBodyWidget* GetLinePage(int index) const;
    int GetLinePageCount() const;

    QTabWidget* m_pTabs;      // the tabs
    QStackedWidget* m_pPages; // the pages
};

HX_HOST_API qLinePages* qReplaceLinePages(QWidget* placeholder);
