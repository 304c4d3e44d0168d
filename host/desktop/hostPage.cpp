#include "host/desktop/hostPage.h"
#include "host/look/look.h"
#include "support/host/api.h"
#include "support/host/ui.h"
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>

namespace {

QByteArray formText(const QWidget* widget)
{
    return widget->property("text").toString().toUtf8();
}

// The toolkit steps within an open list; at its end the step goes round, as on every page.
class roundList : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        QAbstractItemView* list = static_cast<QAbstractItemView*>(watched);
        const int key = static_cast<QKeyEvent*>(event)->key();
        const int last = list->model()->rowCount() - 1;
        const int row = list->currentIndex().row();
        if (!(key == Qt::Key_Up && row == 0) && !(key == Qt::Key_Down && row == last))
            return false;
        list->setCurrentIndex(list->currentIndex().siblingAtRow(row == 0 ? last : 0));
        return true;
    }
};

void stepChoice(QComboBox* box, int step)
{
    const int count = box->count();
    if (count > 0)
        box->setCurrentIndex((box->currentIndex() + step + count) % count);
}

void focusNeighbour(QWidget* receiver, bool next)
{
    QWidget* widget = receiver;
    do {
        widget = next ? widget->nextInFocusChain() : widget->previousInFocusChain();
    } while (widget != receiver &&
             (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() || !widget->isEnabled() ||
              widget->isWindow() || widget->window() != receiver->window() || widget->focusProxy()));
    widget->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
}

} // namespace

void hostPage::build(QDialog* page, QFrame* background, const char* title)
{
    m_pPage = page;
    m_szTitle = title;
    page->setFixedSize(look::kScreenWidth, look::kScreenHeight);
    page->move(0, 0);
    SetBackgroundToFrame(background, HX_THEME("general/gen_setting_bg.jpg"));
    m_pTopBar = new qTopBar(page);
    m_pTopBar->setGeometry(0, 0, look::kScreenWidth, look::kTopBarHeight);
    m_pSoftKeys = new qSoftKeyBar(page);
    m_pSoftKeys->setGeometry(0, look::kScreenHeight - look::kSoftKeyHeight, look::kScreenWidth,
                             look::kSoftKeyHeight);
    for (QWidget* widget : background->findChildren<QWidget*>()) {
        const bool hasText = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget);
        if (hasText && !formText(widget).isEmpty())
            m_formTexts.append({widget, formText(widget)});
    }
    for (QComboBox* box : background->findChildren<QComboBox*>())
        box->view()->installEventFilter(new roundList(box));
    showTexts();
    qFollowLanguage(page, [this] { showTexts(); });
}

void hostPage::addLeftBar(LeftBarOperation* bar, const char* icon, const char* title)
{
    m_pLeftBarOwner = bar;
    m_szLeftIcon = icon;
    m_szLeftTitle = title;
    bar->m_pLeftBar = new qLeftBar(m_pPage);
    bar->m_pLeftBar->setGeometry(0, look::kTopBarHeight, look::kLeftBarWidth, look::kPageHeight);
    bar->m_pLeftBar->setIconGeometry(bar->m_pLeftBar->rect());
    bar->m_pLeftBar->setTextGeometry(bar->m_pLeftBar->rect());
    showTexts();
}

void hostPage::setSoftKey(int index, const char* name, const char* label, const char* slot)
{
    m_aLabels[index] = label;
    m_pSoftKeys->SetButton(index, name, Translate(label), m_pPage, slot);
}

void hostPage::setSoftKeyTitle(int index, std::function<QString()> title)
{
    m_aTitles[index] = std::move(title);
}

void hostPage::setOwnTitle(const QString& title)
{
    m_strOwnTitle = title;
    showTexts();
}

void hostPage::showTexts()
{
    m_pTopBar->setTitle(m_strOwnTitle.isEmpty() ? qTranslate(m_szTitle) : m_strOwnTitle);
    for (const auto& text : m_formTexts)
        text.first->setProperty("text", qTranslate(text.second.constData()));
    for (int index = 0; index < SOFT_KEY_COUNT; ++index) {
        if (m_aTitles[index])
            m_pSoftKeys->SetButtonTitle(index, m_aTitles[index]());
        else if (m_aLabels[index])
            m_pSoftKeys->SetButtonTitle(index, qTranslate(m_aLabels[index]));
    }
    if (m_pLeftBarOwner) {
        m_pLeftBarOwner->m_pLeftBar->setIcon(m_szLeftIcon);
        m_pLeftBarOwner->m_pLeftBar->setTitle(qTranslate(m_szLeftTitle));
        m_pLeftBarOwner->setLeftBar();
    }
}

bool hostPage::pressFormKey(QWidget* receiver, const QKeyEvent* key)
{
    if (receiver->window()->windowType() == Qt::Popup)
        return false; // an open list has its own
    QComboBox* box = qobject_cast<QComboBox*>(receiver);
    if (qIsOkKey(key->key())) {
        if (box)
            box->showPopup();
        return box != nullptr;
    }
    switch (key->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        focusNeighbour(receiver, key->key() == Qt::Key_Down);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (box)
            stepChoice(box, key->key() == Qt::Key_Right ? 1 : -1);
        return box != nullptr;
    default:
        return false;
    }
}
