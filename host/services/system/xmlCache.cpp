#include "support/host/xmlcache.h"
#include "support/file/findFile.h"
#include "support/file/path.h"
#include "support/xml/xmlFile.h"

namespace {

const char* const kMediaTable = "/phone/resource/mediafile.xml";

} // namespace

void qMyXmlCache::addRingFileData(const char* name, const char* path)
{
    Load();
    for (tagRingFile& ring : m_lstRing) {
        if (ring.strPath == path) {
            ring.strName = name;
            return;
        }
    }
    tagRingFile ring;
    ring.strName = name;
    ring.strPath = path;
    m_lstRing.push_back(ring);
}

// The path alone tells a ring tone: the pages that add and remove one name it differently.
void qMyXmlCache::removeRingFileData(const char*, const char* path)
{
    Load();
    for (auto it = m_lstRing.begin(); it != m_lstRing.end();) {
        if (it->strPath == path)
            it = m_lstRing.erase(it);
        else
            ++it;
    }
}

const chObjList_dynamic<tagRingFile, 16>& qMyXmlCache::ringFiles()
{
    Load();
    return m_lstRing;
}

void qMyXmlCache::Load()
{
    if (m_bLoaded)
        return;
    m_bLoaded = true;
    xmlFile table(kMediaTable);
    xmlElement* sound = table.GetRootElement() ? table.GetRootElement()->FindChildElement("sound") : nullptr;
    xmlElement* list = sound ? sound->FindChildElement("filelist") : nullptr;
    xmlElement* item = list ? list->GetFirstChildElement() : nullptr;
    for (; item; item = xmlGetNextElement(item)) {
        chObjList_dynamic<chString, 16> files;
        nuxFindFile(item->GetAttributeValue("path"), sound->GetAttributeValue("filter"), files, 0);
        for (const chString& file : files) {
            tagRingFile ring;
            ring.strName = item->GetAttributeValue("shortname").GetString() + pathGetFileNamePos(file);
            ring.strPath = file;
            m_lstRing.push_back(ring);
        }
    }
}

qMyXmlCache* getMyXmlCache()
{
    static qMyXmlCache cache;
    return &cache;
}
