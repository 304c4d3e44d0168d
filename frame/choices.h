#pragma once
// The items of a combo box as a table of texts and values. Items made here follow the language: PageFrame
// and LineBody put them into the present one at each show. User-interface thread.
#include "support/host/api.h"

class QComboBox;

struct tagChoice
{
    const char* szText;  // English key
    const char* szValue; // what is stored
};

// A table that lives as long as the page, or the first count rows of it.
class Choices
{
public:
    template <int N>
    Choices(const tagChoice (&table)[N]) : Choices(table, N)
    {
    }
    Choices(const tagChoice* first, int count) : m_pFirst(first), m_nCount(count) {}
    const tagChoice* begin() const { return m_pFirst; }
    const tagChoice* end() const { return m_pFirst + m_nCount; }

private:
    const tagChoice* m_pFirst;
    int m_nCount;
};

// Appends the items of the table to what the box holds.
void addChoices(QComboBox* box, Choices choices);
// One item more in front of index; the selection stays on its item.
void insertChoice(QComboBox* box, int index, const tagChoice& choice);
// Puts the items that came from a table into the present language. The selection stays; other items too.
void translateChoices(QComboBox* box);
