#pragma once
// The host's own pages, which the module makes and opens. User-interface thread.
#include "support/host/api.h"
#include "support/host/leftbar.h"
#include "support/text/chString.h"
#include <QDialog>

// The contacts of "/rundata/data/contactData.xml".
class HX_HOST_API dlgPhoneBook : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgPhoneBook(QWidget* parent, tagLeftBarInfo* info);
    ~dlgPhoneBook() override;

protected:
    void showEvent(QShowEvent*) override;
    bool event(QEvent*) override;

private slots:
    void on_click_Call();
    void on_click_New();
    void on_click_Edit();
    void on_click_Back();

private:
    struct Private;
    Private* m_p;
};

// Edits one contact.
class HX_HOST_API dlgContactEditor : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgContactEditor(QWidget* parent, tagLeftBarInfo* info);
    ~dlgContactEditor() override;
    // index: of the contact in the phone book; -1 makes a new one. An editor that is open with changes keeps
    // them when the same contact is asked for, and asks the user before it shows another.
    void EditContact(int index);
    // The pictures that a contact may have were changed.
    void reloadContactImage();

protected:
    void showEvent(QShowEvent*) override;
    bool eventFilter(QObject*, QEvent*) override;
    bool event(QEvent*) override;

private slots:
    void on_click_Save();
    void on_click_IME();
    void on_click_Delete();
    void on_click_Back();

private:
    struct Private;
    Private* m_p;
};

// The contact editor that was made last; null when there is none.
HX_HOST_API dlgContactEditor* getContactEditorDlg();

// The call log.
class HX_HOST_API dlgCallHistroy : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgCallHistroy(QWidget* parent, tagLeftBarInfo* info);
    ~dlgCallHistroy() override;

protected:
    void showEvent(QShowEvent*) override;
    bool event(QEvent*) override;

private slots:
    void on_click_Call();
    void on_click_Clear();
    void on_click_Back();

private:
    struct Private;
    Private* m_p;
};

// A phone book fetched from a server.
class HX_HOST_API dlgRemotePhoneBook : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgRemotePhoneBook(QWidget* parent, tagLeftBarInfo* info);
    ~dlgRemotePhoneBook() override;
    // Shows the page with the book at url under title.
    void ShowUp(const chString& url, const chString& title);

protected:
    bool event(QEvent*) override;

private slots:
    void on_click_Call();
    void on_click_Back();

private:
    struct Private;
    Private* m_p;
};

// A search in the LDAP directory.
class HX_HOST_API dlgLDAP : public QDialog, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgLDAP(QWidget* parent, tagLeftBarInfo* info);
    ~dlgLDAP() override;
    void initData(const chString& title);

protected:
    bool eventFilter(QObject*, QEvent*) override;
    bool event(QEvent*) override;

private slots:
    void on_click_Search();
    void on_click_IME();
    void on_click_Delete();
    void on_click_Back();

private:
    struct Private;
    Private* m_p;
};
