#include "frame/settingPage.h"
#include "frame/noteBox.h"
#include "support/host/ime.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include <QApplication>
#include <QEvent>

SettingPage::SettingPage(QWidget* parent, tagLeftBarInfo* info) : MyWidget(parent, info)
{
    // Before the frame's own, so that it comes after it: the frame shows the labels that the keys begin with.
    qFollowLanguage(this, [this] { m_focusKeys.FocusIn(focusWidget(), m_frame); });
}

void SettingPage::BuildFrame(QFrame* background, const char* title, int keys)
{
    m_frame.Build(this, this, background, title, keys);
    if (m_frame.HasKey(KEY_IME))
        FollowFocus({{FOCUS_ANY, SHOWS_OWN_METHOD, SHOWS_AS_BEFORE}});
}

void SettingPage::SetFilter(PAGE_FILTER filter, const char* name)
{
    m_eFilter = filter;
    m_szFilterName = name;
}

const char* SettingPage::filterName() const
{
    return m_szFilterName ? m_szFilterName : metaObject()->className();
}

void SettingPage::startFilter()
{
    nuxTrace(TRACE_DETAIL, "-----%s installEventFilter----------", filterName());
    qApp->installEventFilter(this);
}

void SettingPage::endFilter()
{
    nuxTrace(TRACE_DETAIL, "-----%s removeEventFilter----------", filterName());
    qApp->removeEventFilter(this);
}

int SettingPage::Refuse(QWidget* widget, const char* message)
{
    noteBox(message, this);
    widget->setFocus();
    return 0;
}

bool SettingPage::event(QEvent* event)
{
    const bool whileShown = m_eFilter == FILTER_WHILE_SHOWN;
    if (event->type() == (whileShown ? QEvent::Show : QEvent::WindowActivate))
        startFilter();
    else if (event->type() == (whileShown ? QEvent::Hide : QEvent::WindowDeactivate))
        endFilter();
    return MyWidget::event(event);
}

// A box over a page that filters as long as it is shown has its keys for itself.
bool SettingPage::isCovered() const
{
    const QWidget* modal = QApplication::activeModalWidget();
    return modal && modal != this;
}

bool SettingPage::eventFilter(QObject* watched, QEvent* event)
{
    if (isCovered())
        return false;
    if (event->type() == QEvent::FocusIn && isChildOf(watched, this))
        m_focusKeys.FocusIn(focusWidget(), m_frame);
    else if (event->type() == QEvent::FocusOut && isChildOf(watched, this))
        m_focusKeys.FocusOut(qobject_cast<QWidget*>(watched), m_frame);
    return MyWidget::eventFilter(watched, event);
}

void SettingPage::showEvent(QShowEvent* event)
{
    MyWidget::showEvent(event);
    m_frame.Translate();
    m_focusKeys.FocusIn(focusWidget(), m_frame);
}

void SettingPage::on_click_Save()
{
    accept();
}

void SettingPage::on_click_IME()
{
    qOnIMEButtonClicked(this, m_frame.m_pSoftKeyBar);
}

void SettingPage::on_click_Delete()
{
    qOnBackspaceClicked(this);
}

void SettingPage::on_click_Back()
{
    reject();
}
