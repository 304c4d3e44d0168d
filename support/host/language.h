#pragma once
// The translator. User-interface thread.
#include "support/container/chArray.h"
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QString>
#include <functional>

class QWidget;

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
    // The same for a key with several meanings; note tells which one. Without a text for note, that of the
    // key.
    const char* Translate(const char* key, const char* note);
    void lang_GetAllName(chObjArray<tagLanguageName, true, 4>& names);
    // 1 when the language is known. The application and all its widgets get QEvent::LanguageChange, in the
    // next turn of the event loop.
    int SetLanguage(const char* name);
    chString GetLanguage() const;

private:
    friend CLanguageHelper* GetLanguageHelper();
    CLanguageHelper();
    ~CLanguageHelper();
    struct Private;
    Private* m_p;
};

// Never null; lives until the process ends. The first call takes the language from the configuration; another
// one that is stored later is that of the next start.
HX_HOST_API CLanguageHelper* GetLanguageHelper();

inline const char* Translate(const char* key)
{
    return GetLanguageHelper()->Translate(key);
}
inline QString qTranslate(const char* key)
{
    return QString::fromUtf8(Translate(key));
}
inline const char* Translate(const char* key, const char* note)
{
    return GetLanguageHelper()->Translate(key, note);
}
inline QString qTranslate(const char* key, const char* note)
{
    return QString::fromUtf8(Translate(key, note));
}

// Whoever shows texts gives what puts them into the present language. It is called after each change of the
// language: at once while widget is on view, else before its next show. The first time is the caller's own.
// It lives as long as widget.
HX_HOST_API void qFollowLanguage(QWidget* widget, std::function<void()> showTexts);
