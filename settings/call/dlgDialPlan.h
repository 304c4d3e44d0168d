#pragma once
// The page "Dial Plan": which prefixes of dialled numbers are replaced, and by what. The host makes it. The
// rules are the elements of "/rundata/data/dialplan.xml"; what changes stays in the open document until
// Delete or Back saves it. User-interface thread.
#include "frame/settingPage.h"
#include "frame/xmlTable.h"
#include <memory>

class QLineEdit;
class QModelIndex;

namespace Ui {
class dlgDialPlan;
}

class dlgDialPlan : public SettingPage
{
    Q_OBJECT
public:
    // info: kept by pointer, see tagLeftBarInfo; null for the page's own picture and title.
    HX_MODULE_API dlgDialPlan(QWidget* parent, tagLeftBarInfo* info);
    ~dlgDialPlan() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

    // 0 when the file cannot be read or has no rules: the table keeps what it had.
    int LoadData();
    // The current row into the two edits; empty without one.
    void SetData();
    // What a row that was chosen by keys does.
    void ListMove();
    // An older Add with a limit of its own, which no key leads to.
    void AddRow();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

protected slots:
    void on_click_IME() override;
    void on_click_Delete() override;
    void on_click_Back() override;

private slots:
    void on_click_Add();
    void on_btnOK_clicked();
    void on_btnCancel_clicked();
    void on_tabWgtList_clicked(const QModelIndex& index);

private:
    void beginRule(int limit);
    void enableEdits(bool enable);
    void greyEdits(bool grey);
    void note(const char* text);
    void noteAt(const char* text, QLineEdit* edit);
    QString textOf(QLineEdit* edit) const;
    bool isTaken(const QString& prefix) const;
    void changeRule(const QString& prefix, const QString& replace);
    void addRule(const QString& prefix, const QString& replace);
    void setRow(int row, xmlElement* rule, const QString& prefix, const QString& replace);
    int saveRules();
    bool goesToEdits(int key);

    std::unique_ptr<Ui::dlgDialPlan> ui;
    std::unique_ptr<XmlTable> m_pRules; // a rule for each row, in both cells
    bool m_bAdding = false;             // the edits hold a new rule, not the current one
    bool m_bChanged = false;            // since the page was shown
    bool m_bFailureTold = false;        // of the last save
    const char* m_szNote = "";          // English key
};
