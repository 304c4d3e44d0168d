#include "support/host/language.h"
#include <QEvent>
#include <QWidget>

namespace {

class LanguageFollower : public QObject
{
public:
    LanguageFollower(QWidget* widget, std::function<void()> showTexts)
        : QObject(widget), m_pWidget(widget), m_showTexts(std::move(showTexts)),
          m_strShown(GetLanguageHelper()->GetLanguage())
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        const bool isSeen = event->type() == QEvent::LanguageChange && m_pWidget->isVisible();
        if (isSeen || event->type() == QEvent::Show)
            follow();
        return false;
    }

private:
    void follow()
    {
        const chString language = GetLanguageHelper()->GetLanguage();
        if (language == m_strShown)
            return;
        m_strShown = language;
        m_showTexts();
    }

    QWidget* m_pWidget;
    std::function<void()> m_showTexts;
    chString m_strShown;
};

} // namespace

void qFollowLanguage(QWidget* widget, std::function<void()> showTexts)
{
    new LanguageFollower(widget, std::move(showTexts));
}
