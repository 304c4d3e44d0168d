#pragma once

#include "support/text/chString.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>

// The bytes of a block past its header: capacity, terminator and spare bytes.
inline int textAreaBytes(const chString& text)
{
    return text.GetStringData()->m_nAllocLength + 4;
}

// What every string must hold at any time.
inline testing::AssertionResult isSound(const chString& text)
{
    const NUX_StringHelper::chStringData* data = text.GetStringData();
    if (!data)
        return text.GetText() == NUX_StringHelper::szNULL
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "no block, not szNULL";
    if (data->m_nAllocLength < 16 || data->m_nAllocLength % 16 != 0)
        return testing::AssertionFailure() << "capacity " << data->m_nAllocLength;
    if (data->m_nReferenceCount < 1)
        return testing::AssertionFailure() << "count " << data->m_nReferenceCount;
    const int length = text.GetLength();
    if (length > data->m_nAllocLength || length != static_cast<int>(strlen(text.GetText())))
        return testing::AssertionFailure() << "length " << length << " of \"" << text.GetText() << "\"";
    for (int i = length; i < textAreaBytes(text); ++i)
        if (text.GetText()[i] != 0)
            return testing::AssertionFailure()
                   << "byte " << i << " past the end of \"" << text.GetText() << "\"";
    return testing::AssertionSuccess();
}

inline int capacityOf(const chString& text)
{
    return text.GetStringData() ? text.GetStringData()->m_nAllocLength : 0;
}

inline int referencesOf(const chString& text)
{
    return text.GetStringData() ? text.GetStringData()->m_nReferenceCount : 0;
}
