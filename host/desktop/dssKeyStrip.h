#pragma once
// The strip of programmable keys on the home screen: five at a time, and a button that turns to the next
// five. A key can be held, which opens its editor. While something covers the home screen nothing is painted;
// it is up to date again when the screen is. User-interface thread.
#include <QObject>

class QAbstractButton;
class QWidget;
class dssKeyButton;
class pagerButton;

class dssKeyStrip : public QObject
{
    Q_OBJECT
public:
    enum { KEYS = 5, COLUMNS = KEYS + 1 };

    // The buttons are children of home, from left to right at x of each column, as high as a finger needs it.
    explicit dssKeyStrip(QWidget* home);
    QAbstractButton* button(int column) const;
    int page() const { return m_nPage; }
    void turn();
    // Everything that changed while the home screen was covered.
    void refresh();

private:
    int indexOf(int column) const { return m_nPage * KEYS + column; }
    void onChanged(int index);
    void showPage();

    QWidget* m_pHome;
    dssKeyButton* m_keys[KEYS] = {};
    pagerButton* m_pPager = nullptr;
    int m_nPage = 0;
    bool m_bStale = false;
};
