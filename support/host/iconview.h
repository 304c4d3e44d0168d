#pragma once
// The icon grid of a menu. User-interface thread.
#include "support/host/api.h"
#include <QListWidget>

// A menu file is XML: <RootMenu title= icon=> with one <item title= icon= [menu=|dial=] [level=]/> each.
// title is the page's name and the key of the caption. menu names another menu file that the item opens
// instead. dial names a number that it calls instead: a key of "DialNumber" in the user's key file, which the
// user is asked for when it has none, and when he holds the icon. level "admin" asks for the administrator's
// password first.
class HX_HOST_API qIconView : public QListWidget
{
    Q_OBJECT
public:
    explicit qIconView(QWidget* parent = nullptr);
    ~qIconView() override;
    // path: device path. A missing or broken file gives an empty menu and 0.
    int LoadMenuFile(const char* path);
    // A menu that the host knows by name: "Directory". 0 when it cannot be made.
    int LoadMenuFileEx(const char* name);
    void SetMartrixGrix(int columns, int rows);
    int GetPageCount() const; // 0 for an empty menu
    int GetCurrentPage() const;
    void SetCurrentPage(int page); // clamped; selects the page's first icon
    void PageDown();               // from the last page on to the first
    void PageUp();
    // Loads the present menu again and keeps page and selection where they still exist.
    void refreshIconView();
    int currentIconCount() const;

    QString m_strTitleName; // title key of the menu
    QString m_strIconPath;  // its picture

protected:
    void paintEvent(QPaintEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool event(QEvent* event) override;

private:
    struct Private;
    Private* m_p;
};

HX_HOST_API qIconView* qReplaceIconView(QWidget* placeholder);
