#pragma once
#include "signage/mediaBase.h"

class mediaVideo : public mediaBase
{
public:
    mediaVideo() : mediaBase(MEDIA_TYPE_VIDEO) {}
    // Bare file name in the signage folder.
    void SetVideoFile(const chString& file) { m_strFile = file; }
    const chString& GetVideoFileName() const { return m_strFile; }

private:
    chString m_strFile;
};
