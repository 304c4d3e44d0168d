#pragma once
// A page with a tab for each of the four lines, and a body for each. User-interface thread.
#include "frame/configPage.h"
#include "frame/lineBody.h"

class LinesPage : public ConfigPage
{
    Q_OBJECT
public:
    LinesPage(QWidget* parent, tagLeftBarInfo* info);

protected:
    // In the constructor, after BuildFrame(): the tabs take the placeholder's place. The body of the first
    // line is made at once, the others when the page is on the screen.
    void BuildLines(QWidget* placeholder);
    // A new body.
    virtual LineBody* MakeBody() = 0;
    LineBody* Body(int line) const; // null while it is not made

    void RefreshData() override;
    QWidget* FirstFocus() override;

protected slots:
    // Checks every line, then stores every line, and closes. The tab of the first line that fails comes up.
    void on_click_Save() override;

private slots:
    void AddOtherPage();

private:
    void addBody();
    void showTabs();
    int checkLines();
    int storeLines();

    qLinePages* m_pLinePages = nullptr;
};
