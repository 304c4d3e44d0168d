#pragma once
// The translator. User-interface thread.
#include "support/container/chArray.h"
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QString>

struct tagLanguageName
{
    chString strName;       // as stored in the configuration, "English"
    chString strNativeName; // as its own speakers write it
};

class HX_HOST_API CLanguageHelper
{
public:
    // The text of the present language for an English key; the key itself when there is none, null for null.
    // Valid until the process ends.
    const char* Translate(const char* key);
    void lang_GetAllName(chObjArray<tagLanguageName, true, 4>& names);
    // 1 when the language is known. What is on the screen changes with its next show.
    int SetLanguage(const char* name);
    chString GetLanguage() const;

private:
    friend CLanguageHelper* GetLanguageHelper();
    CLanguageHelper();
    ~CLanguageHelper();
    struct Private;
    Private* m_p;
};

// Never null; lives until the process ends. The first call takes the language from the configuration.
HX_HOST_API CLanguageHelper* GetLanguageHelper();

inline const char* Translate(const char* key)
{
    return GetLanguageHelper()->Translate(key);
}
inline QString qTranslate(const char* key)
{
    return QString::fromUtf8(Translate(key));
}
