#pragma once
// The "Loading..." box over a page that is being built; hides itself when the page takes over. Shown by
// ShowLoadingTipBox(). User-interface thread.
#include <QDialog>

class Ui_dlgLoadingTip;

class dlgLoadingTip : public QDialog
{
    Q_OBJECT
public:
    explicit dlgLoadingTip(QWidget* parent = nullptr);
    ~dlgLoadingTip() override;
    // Stays a window of its own whatever the parent.
    void SetOwner(QWidget* owner);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Ui_dlgLoadingTip* ui;
};
