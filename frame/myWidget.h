#pragma once
// The base of all settings pages: key pad and touch behave alike on every page. User-interface thread.
#include "support/host/leftbar.h"
#include <QDialog>

class QComboBox;
class QFocusEvent;
class QKeyEvent;
class QMouseEvent;

class MyWidget : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    MyWidget(QWidget* parent, tagLeftBarInfo* info);

    // Filters the events of all widgets while it is installed on the application.
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QComboBox* focusCombo() const;
    QComboBox* openCombo() const;
    bool filterRelease(QWidget* receiver, QMouseEvent* event);
    bool filterFocusIn(QWidget* receiver, QEvent* event);
    bool filterKeyPress(QWidget* receiver, QKeyEvent* event);
    void pressOk(QWidget* receiver);
    bool stepSideways(int step);
    bool stepUpOrDown(bool next);
    bool stepInOpenList(QComboBox* box, bool next);
    void focusFirstChild();
    void armLeftBarTimer();
};
