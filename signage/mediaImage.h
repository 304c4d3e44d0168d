#pragma once
#include "signage/mediaBase.h"

class mediaImage : public mediaBase
{
public:
    mediaImage() : mediaBase(MEDIA_TYPE_IMAGE) {}
    // Bare file name in the signage folder.
    void SetImageFile(const chString& file) { m_strFile = file; }
    const chString& GetImageFileName() const { return m_strFile; }

private:
    chString m_strFile;
};
