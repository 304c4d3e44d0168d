#include "applets/feed.h"
#include "frame/configFiles.h"
#include "signage/nDeckDisplay.h"
#include "signage/nDeckFileManager.h"
#include "support/file/deviceRoot.h"
#include "support/file/fileTools.h"
#include "support/file/path.h"
#include "support/host/registry.h"
#include "support/text/chCharacter.h"
#include <cstring>
#include <string>

namespace {

bool isRightInside(const chString& path, const char* folder)
{
    const size_t length = strlen(folder);
    return strncmp(path.GetText(), folder, length) == 0 && pathIsSafeName(path.GetText() + length);
}

bool isLink(const chString& path)
{
    return devicePathTarget(path) != path;
}

} // namespace

FEED_KIND feedKind(const char* section)
{
    if (GetNDeckDispaly().IsNdeckEnable())
        return FEED_KIND_SIGNAGE;
    const chString source =
        NUX_SubClass::nuxGetRegistryString(USER_INI, section, "strSource", FEED_PUBLIC_TITLE);
    return source == FEED_PUBLIC_TITLE ? FEED_KIND_PUBLIC : FEED_KIND_NONE;
}

chString feedServiceAddress(const char* service, const char* key, const chString& value)
{
    const _ServerCfg config = GetNDeckFileManager().GetServerConfig();
    return config.strUrl + "/service/" + service + ".htm?&serverKey=" + config.strKey +
           "&hardwareKey=" + config.strClientKey + "&version=" + config.strVersion +
           "&language=" + config.strLanguage + "&" + key + "=" + value;
}

FEED_SOURCE feedSourceAddress(const char* file, const char* root, const char* element, const char* title,
                              chString& address)
{
    xmlFile sources;
    xmlElement* top =
        sources.LoadFromFile(file, XML_TABLE_LIMIT) ? xmlFindElementFromRoot(&sources, root) : nullptr;
    if (!top)
        return FEED_SOURCE_NO_FILE;
    for (xmlElement* source = top->GetFirstChildElement(); source; source = xmlGetNextElement(source)) {
        if (element && strcmp(source->GetName(), element) != 0)
            continue;
        if (strcmp(source->GetAttributeValue("title").GetString().GetText(), title) != 0)
            continue;
        address = source->GetAttributeValue("address").GetString();
        return FEED_SOURCE_FOUND;
    }
    return FEED_SOURCE_NO_TITLE;
}

// Letters of several bytes are stepped over whole.
chString feedFillIn(const chString& address, const char* placeholder, const chString& value)
{
    const size_t length = strlen(placeholder);
    std::string filled;
    for (const char* at = address.GetText(); *at;) {
        if (strncmp(at, placeholder, length) == 0) {
            filled.append(value.GetText(), size_t(value.GetLength()));
            at += length;
            continue;
        }
        const int letter = chIsLeadbyte(*at) ? chLetterLength(at) : 1;
        filled.append(at, size_t(letter));
        at += letter;
    }
    return chString(filled.c_str());
}

void feedPost(HttpAction& action, const char* folder, long long limit)
{
    action.nSizeLimit = limit;
    action.bFlush = 0;
    const chString url = action.strRemoteUrl;
    if (!isRightInside(action.strLocalFile, folder))
        action.strRemoteUrl = chString();
    else if (isLink(action.strLocalFile))
        fileRemove(action.strLocalFile);
    PostAction(action);
    action.strRemoteUrl = url;
}

int feedLoadAnswer(xmlFile& answer, const char* path)
{
    return !isLink(path) && answer.LoadFromFile(path, FEED_ANSWER_LIMIT);
}

int feedAnswerIsThere(const chString& path, const char* folder)
{
    return isRightInside(path, folder) && pathFileExist(path);
}

void feedRemoveAnswer(const chString& path, const char* folder)
{
    if (isRightInside(path, folder))
        fileRemove(path);
}

QString feedShownText(const QString& text, qsizetype limit)
{
    QString shown = text.left(limit);
    // A letter of two halves is shown whole or not at all.
    if (shown.size() < text.size() && !shown.isEmpty() && shown.back().isHighSurrogate())
        shown.chop(1);
    for (QChar& letter : shown) {
        switch (letter.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            letter = QLatin1Char(' ');
            break;
        default:
            break;
        }
    }
    return shown;
}
