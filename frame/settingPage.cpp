#include "frame/settingPage.h"
#include "frame/noteBox.h"
#include "support/host/ime.h"
#include "support/host/trace.h"
#include "support/host/ui.h"
#include <QApplication>
#include <QEvent>

SettingPage::SettingPage(QWidget* parent, tagLeftBarInfo* info) : MyWidget(parent, info) {}

void SettingPage::BuildFrame(QFrame* background, const char* title, int keys)
{
    m_frame.Build(this, this, background, title, keys);
}

int SettingPage::Refuse(QWidget* widget, const char* message)
{
    noteBox(message, this);
    widget->setFocus();
    return 0;
}

// Only the page on top filters; a box over it takes the filter away until it is closed.
bool SettingPage::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        nuxTrace(TRACE_DETAIL, "-----%s installEventFilter----------", metaObject()->className());
        qApp->installEventFilter(this);
    } else if (event->type() == QEvent::WindowDeactivate) {
        nuxTrace(TRACE_DETAIL, "-----%s removeEventFilter----------", metaObject()->className());
        qApp->removeEventFilter(this);
    }
    return MyWidget::event(event);
}

bool SettingPage::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn && m_frame.HasKey(KEY_IME) && isChildOf(watched, this))
        m_frame.m_pSoftKeyBar->SetButtonTitle(SOFT_KEY_IME, qGetCurrentIME(focusWidget()));
    return MyWidget::eventFilter(watched, event);
}

void SettingPage::showEvent(QShowEvent* event)
{
    MyWidget::showEvent(event);
    m_frame.Translate();
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
