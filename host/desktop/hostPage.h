#pragma once
// Background, bars and soft keys of the host's own pages. A page holds one hostPage and builds it in its
// constructor, after setupUi(). The page owns the widgets. User-interface thread.
#include "support/host/leftbar.h"
#include <QList>
#include <QPair>
#include <functional>

class QDialog;
class QFrame;
class QKeyEvent;

class hostPage
{
public:
    // background: the form's frame that all else lies on. title: English key, as every label and button of
    // the form has one too.
    void build(QDialog* page, QFrame* background, const char* title);
    // The bar on the left, with a picture and a title (English key) of the page's own, which the record of
    // a menu may replace.
    void addLeftBar(LeftBarOperation* bar, const char* icon, const char* title);
    // label: English key; slot is SLOT(...) of the page.
    void setSoftKey(int index, const char* name, const char* label, const char* slot);
    // What stands on it instead from the next change of language on: what a page shows there by itself.
    void setSoftKeyTitle(int index, std::function<QString()> title);
    // A title that is nobody's key: the name of a server's phone book.
    void setOwnTitle(const QString& title);
    // All texts in the present language, which they follow by themselves; and the record of a menu in the
    // left bar.
    void showTexts();

    qSoftKeyBar* softKeys() const { return m_pSoftKeys; }
    // Up and down through the widgets of a form, left and right through the choices of a combo box, whose
    // list OK opens. True when the key was one of these.
    static bool pressFormKey(QWidget* receiver, const QKeyEvent* key);

private:
    QDialog* m_pPage = nullptr;
    qTopBar* m_pTopBar = nullptr;
    qSoftKeyBar* m_pSoftKeys = nullptr;
    const char* m_szTitle = nullptr;
    QString m_strOwnTitle;
    const char* m_aLabels[SOFT_KEY_COUNT] = {};
    std::function<QString()> m_aTitles[SOFT_KEY_COUNT];
    LeftBarOperation* m_pLeftBarOwner = nullptr;
    const char* m_szLeftTitle = nullptr;
    const char* m_szLeftIcon = nullptr;
    QList<QPair<QWidget*, QByteArray>> m_formTexts;
};
