#include "support/xml/phraseStringA.h"

#include "support/xml/xmlChars.h"
#include "support/xml/xmlStorage.h"

phraseStringA::phraseStringA(const phraseStringA& other)
{
    *this = other;
}

phraseStringA& phraseStringA::operator=(const phraseStringA& other)
{
    if (this != &other && !other.m_bNull)
        *this = other.GetString();
    else if (this != &other && !m_bNull)
        *this = "";
    return *this;
}

phraseStringA& phraseStringA::operator=(const chString& text)
{
    if (xmlIsCleanText(std::string_view(text.GetText(), size_t(text.GetLength()))))
        Take(text);
    else
        SetText(text.GetText(), text.GetLength());
    return *this;
}

phraseStringA& phraseStringA::operator=(const char* text)
{
    SetText(text, text ? int(strlen(text)) : 0);
    return *this;
}

void phraseStringA::SetText(const char* text, int length)
{
    const std::string_view given(text ? text : "", text && length > 0 ? size_t(length) : 0);
    if (xmlIsCleanText(given)) {
        Take(chString(given.data(), int(given.size())));
        return;
    }
    const std::string clean = xmlCleanText(given);
    Take(chString(clean.data(), int(clean.size())));
}

chString phraseStringA::GetString() const
{
    return m_pText == m_strOwned.GetText() ? m_strOwned : chString(m_pText, m_nLength);
}

void phraseStringA::Take(const chString& text)
{
    m_strOwned = text;
    m_pText = m_strOwned.GetText();
    m_nLength = m_strOwned.GetLength();
    const bool wasNull = m_bNull;
    m_bNull = false;
    if (!m_pHolder)
        return;
    m_pHolder->m_pStorage->NoteOwnText();
    if (wasNull && m_pHolder->GetType() == xmlTypeElement)
        static_cast<xmlElement*>(m_pHolder)->AttributeAssigned(this);
}
