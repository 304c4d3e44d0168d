#pragma once
// The page "Version Detail": the software modules of the phone. User-interface thread.
#include "frame/pageFrame.h"
#include "support/host/leftbar.h"
#include "support/xml/xmlFile.h"
#include <QDialog>
#include <memory>

namespace Ui {
class dlgVersion_Detail;
}

class dlgVersion_Detail : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgVersion_Detail(QWidget* parent, tagLeftBarInfo* info);
    ~dlgVersion_Detail() override;

    // Puts a row at the top.
    void insertVersionItem(const char* name, const char* version);
    // The phone's own modules as this library was built, for a phone whose image does not list them.
    void setData();
    // One row down or up, and round at the ends. With fewer than two rows nothing moves.
    void CallListMoveUp();
    void CallListMoveDown();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    void on_click_Back();

private:
    void InitData();
    void LoadData();
    void setRow(int row, const char* name, const char* version);
    void showHeaders();

    std::unique_ptr<Ui::dlgVersion_Detail> ui;
    PageFrame m_frame;
    xmlFile m_xmlFile; // the rows point into it
};
