#include "host/services/keyfiles/keyFileCache.h"
#include "support/file/deviceRoot.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/host/language.h"
#include "support/host/registry.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QTranslator>
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

const char* const kFolder = "/phone/resource/language/";
const char* const kCodes = "/phone/resource/LanguageCode.ini";
const char* const kUserFile = "/rundata/config/user/user.ini";
const char* const kContext = "hx";
const char kNoteFollows = '\4';             // no character of a key
const char* const kOwnLanguage = "English"; // its texts are the keys

// As its own speakers write it; a language the file does not know has one name.
chString nativeName(const chString& name)
{
    return NUX_SubClass::nuxGetRegistryString(kCodes, "Native", name, name);
}

chString fileOf(const chString& name)
{
    return kFolder + name + ".qm";
}

// The toolkit passes it on to every window and every widget.
void tellEverybody()
{
    if (!QCoreApplication::instance())
        return;
    QEvent change(QEvent::LanguageChange);
    QCoreApplication::sendEvent(QCoreApplication::instance(), &change);
}

bool isKnown(const chString& name)
{
    return name == kOwnLanguage || (pathIsSafeName(name) && pathFileExist(fileOf(name)));
}

std::vector<std::string> translatedNames()
{
    std::vector<std::string> names;
    chObjList_dynamic<chString, 16> files;
    nuxFindFile(kFolder, "*.qm", files, 0);
    for (const chString& file : files)
        names.emplace_back(pathGetFileNamePos(file), pathGetFileExtensionPos(file));
    return names;
}

// In the order of the phone's list, then what else was installed; the language of the keys is always there.
std::vector<std::string> allNames()
{
    keyFile codes;
    keyFileLoad(kCodes, codes);
    std::vector<std::string> names;
    const auto append = [&names](const std::string& name) {
        if (isKnown(name.c_str()) && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    };
    for (const std::string& name : codes.SectionKeys("Code"))
        append(name);
    append(kOwnLanguage);
    for (const std::string& name : translatedNames())
        append(name);
    return names;
}

} // namespace

struct CLanguageHelper::Private
{
    bool Load(const chString& name);
    const char* Find(const char* key, const char* note);
    const char* Keep(const QByteArray& text) { return texts.insert(text.toStdString()).first->c_str(); }

    chString language = kOwnLanguage;
    std::unique_ptr<QTranslator> translator; // null for the language of the keys
    QHash<QByteArray, const char*> found;    // of the present language
    std::unordered_set<std::string> texts;   // all that were handed out, in all languages
};

bool CLanguageHelper::Private::Load(const chString& name)
{
    std::unique_ptr<QTranslator> loaded;
    if (name != kOwnLanguage) {
        loaded = std::make_unique<QTranslator>();
        if (!loaded->load(toQString(devicePath(fileOf(name))))) {
            nuxTrace(TRACE_NOTE, "The language file %s cannot be read", fileOf(name).GetText());
            return false;
        }
    }
    translator = std::move(loaded);
    language = name;
    found.clear();
    return true;
}

const char* CLanguageHelper::Private::Find(const char* key, const char* note)
{
    QByteArray bytes = QByteArray::fromRawData(key, static_cast<qsizetype>(strlen(key)));
    if (note)
        bytes = bytes + kNoteFollows + note;
    const auto known = found.constFind(bytes);
    if (known != found.constEnd())
        return *known ? *known : key;
    const QString text = translator->translate(kContext, key, note);
    const char* kept = text.isEmpty() ? nullptr : Keep(text.toUtf8());
    bytes.detach();
    found.insert(bytes, kept);
    return kept ? kept : key;
}

CLanguageHelper::CLanguageHelper() : m_p(new Private)
{
    const chString name =
        NUX_SubClass::nuxGetRegistryString(kUserFile, "Language", "strGUILanguage", kOwnLanguage);
    SetLanguage(name);
}

CLanguageHelper::~CLanguageHelper()
{
    delete m_p;
}

const char* CLanguageHelper::Translate(const char* key)
{
    return Translate(key, nullptr);
}

const char* CLanguageHelper::Translate(const char* key, const char* note)
{
    return key && *key && m_p->translator ? m_p->Find(key, note) : key;
}

void CLanguageHelper::lang_GetAllName(chObjArray<tagLanguageName, true, 4>& names)
{
    names.SetArraySize(0);
    for (const std::string& name : allNames()) {
        tagLanguageName language;
        language.strName = name.c_str();
        language.strNativeName = nativeName(language.strName);
        names.Append(language);
    }
}

int CLanguageHelper::SetLanguage(const char* name)
{
    const chString wanted(name);
    if (wanted == m_p->language)
        return 1;
    if (!isKnown(wanted)) {
        nuxTrace(TRACE_NOTE, "The language \"%s\" is not known", wanted.GetText());
        return 0;
    }
    if (!m_p->Load(wanted))
        return 0;
    tellEverybody();
    return 1;
}

chString CLanguageHelper::GetLanguage() const
{
    return m_p->language;
}

CLanguageHelper* GetLanguageHelper()
{
    static CLanguageHelper* helper = new CLanguageHelper;
    return helper;
}
