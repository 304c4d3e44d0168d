#pragma once
// The message key, F9 on a PC's keyboard: it opens the page "Message" over the home screen, menus and pages.
// User-interface thread.
#include <QObject>

class messageKey : public QObject
{
    Q_OBJECT
public:
    // Listens as long as it lives.
    explicit messageKey(QObject* parent);
    bool eventFilter(QObject* watched, QEvent* event) override;
};
