#pragma once
// One thing that a region shows. Owned by its region.
#include "support/text/chString.h"

enum MEDIA_TYPE { MEDIA_TYPE_TEXT = 1, MEDIA_TYPE_IMAGE = 2, MEDIA_TYPE_VIDEO = 4 };

class mediaBase
{
public:
    virtual ~mediaBase();
    mediaBase(const mediaBase&) = delete;
    mediaBase& operator=(const mediaBase&) = delete;

    MEDIA_TYPE GetMediaType() const { return m_eType; }
    // seconds as the attribute has them: "10" or "0x0A"; what is no number counts as 0.
    void SetDuration(const char* seconds);
    int GetDuration() const { return m_nDuration; } // milliseconds
    // The number that the dial button calls; empty for no button.
    void SetPhoneNumber(const chString& number) { m_strPhoneNumber = number; }
    const chString& GetPhoneNumber() const { return m_strPhoneNumber; }
    void SetUrl(const chString& url) { m_strUrl = url; }
    const chString& GetUrl() const { return m_strUrl; }

protected:
    explicit mediaBase(MEDIA_TYPE type) : m_eType(type) {}

private:
    int m_nDuration = 0;
    MEDIA_TYPE m_eType;
    chString m_strPhoneNumber;
    chString m_strUrl;
};
