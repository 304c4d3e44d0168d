#pragma once
// What a menu hands to the page it opens, and the mix-in of every page that shows it in its left bar.
#include "support/host/bars.h"
#include "support/host/language.h"
#include <QString>

struct tagLeftBarInfo
{
    QString strIcon;  // device path of the icon, shown as it stands
    QString strTitle; // untranslated key
};

// The record is held by pointer: it lives as long as the page, or is replaced before the next show.
class HX_HOST_API LeftBarOperation
{
public:
    explicit LeftBarOperation(tagLeftBarInfo* info = nullptr) : m_pLeftBarInfo(info) {}
    virtual ~LeftBarOperation() = default;

    // Shows the record in the bar; nothing without a record or a bar.
    virtual void setLeftBar()
    {
        if (!m_pLeftBarInfo || !m_pLeftBar)
            return;
        m_pLeftBar->setIcon(m_pLeftBarInfo->strIcon);
        m_pLeftBar->setTitle(qTranslate(m_pLeftBarInfo->strTitle.toUtf8().constData()));
    }
    // Stores the pointer only.
    void setLeftBar(tagLeftBarInfo* info) { m_pLeftBarInfo = info; }

    tagLeftBarInfo* m_pLeftBarInfo;
    qLeftBar* m_pLeftBar = nullptr;
};
