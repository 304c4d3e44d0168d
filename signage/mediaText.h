#pragma once
#include "signage/mediaBase.h"

// Rich text, still or running.
class mediaText : public mediaBase
{
public:
    mediaText() : mediaBase(MEDIA_TYPE_TEXT) {}
    void SetHtmlContent(const chString& html) { m_strHtml = html; }
    const chString& GetHtmlContent() const { return m_strHtml; }

private:
    chString m_strHtml;
};
