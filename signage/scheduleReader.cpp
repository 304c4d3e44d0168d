#include "signage/scheduleReader.h"
#include "signage/nDeckFolder.h"
#include "signage/scheduleTime.h"
#include "support/file/fileTools.h"
#include "support/host/trace.h"
#include <string>
#include <unordered_map>

namespace {

using Md5Book = std::unordered_map<std::string, chString>;

chString attribute(const xmlElement* element, const char* name)
{
    const phraseStringA* value = element->FindAttributeValue(name);
    return value ? value->GetString() : chString();
}

// The next element of that name, element itself included.
xmlElement* sameName(xmlElement* element, const char* name)
{
    while (element && strcmp(element->GetName(), name) != 0)
        element = xmlGetNextElement(element);
    return element;
}

xmlElement* nextOfName(xmlElement* element, const char* name)
{
    return sameName(xmlGetNextElement(element), name);
}

bool areShort(std::initializer_list<const chString*> texts)
{
    for (const chString* text : texts) {
        if (text->GetLength() > SCHEDULE_TEXT_LIMIT)
            return false;
    }
    return true;
}

// Only the files tell the MD5 of a layout; the first one of its name counts.
Md5Book layoutMd5s(xmlElement* file)
{
    Md5Book book;
    for (; file; file = nextOfName(file, "file")) {
        if (attribute(file, "type") == "layout")
            book.emplace(attribute(file, "path").GetText(), attribute(file, "md5"));
    }
    return book;
}

bool isTimeNow(const _nDeckLayoutNode& layout)
{
    chTime from, to;
    scheduleWindow(layout.fromdt, layout.todt, layout.eventType, from, to);
    nuxTrace(TRACE_DETAIL, "SetLayoutSchedule FromDt(%s) ToDt(%s)",
             from.Format("%Y-%m-%d %H:%M:%S").GetText(), to.Format("%Y-%m-%d %H:%M:%S").GetText());
    return IsScheduleValid(from, to);
}

_nDeckLayoutNode layoutOf(const xmlElement* element, const Md5Book& md5s)
{
    _nDeckLayoutNode layout;
    layout.file = attribute(element, "file");
    layout.fromdt = attribute(element, "fromdt");
    layout.todt = attribute(element, "todt");
    layout.eventType = attribute(element, "eventType");
    const auto md5 = md5s.find(layout.file.GetText());
    if (md5 != md5s.end())
        layout.md5 = md5->second;
    layout.bMeeting = attribute(element, "applet") == "meeting";
    return layout;
}

_nDeckFileNode mediaOf(const xmlElement* element)
{
    _nDeckFileNode media;
    media.type = attribute(element, "type");
    media.path = attribute(element, "path");
    media.md5 = attribute(element, "md5");
    media.size = attribute(element, "size");
    return media;
}

void traceBeyond(const char* what, int count, int limit)
{
    if (count)
        nuxTrace(TRACE_NOTE, "the schedule names more than %d %s: %d are left out", limit, what, count);
}

} // namespace

const xmlElement* serverResult(const xmlDocument& reply, const char* name)
{
    return xmlFindElementFromRoot(&reply, "norvane", "ndeck", "result", name);
}

scheduleReader::scheduleReader(const char* file)
{
    std::string text;
    fileReadWhole(file, text, NDECK_SCHEDULE_LIMIT);
    m_bEmpty = text.empty();
    if (!m_bEmpty)
        m_bValid = m_document.ParseDocument(text.data(), static_cast<int>(text.size())) != 0;
}

bool scheduleReader::IsSchedule() const
{
    if (!m_bValid)
        return false;
    for (const char* part : {"result", "schedule", "files"}) {
        if (xmlFindElementFromRoot(&m_document, "norvane", "ndeck", part))
            return true;
    }
    return false;
}

// The first entry of a group.
xmlElement* scheduleReader::Entries(const char* group, const char* entry) const
{
    const xmlElement* all = xmlFindElementFromRoot(&m_document, "norvane", "ndeck", group);
    return all ? sameName(all->GetFirstChildElement(), entry) : nullptr;
}

void scheduleReader::GetLayouts(nDeckLayoutList& layouts) const
{
    const Md5Book md5s = layoutMd5s(Entries("files", "file"));
    int beyond = 0;
    for (xmlElement* element = Entries("schedule", "layout"); element;
         element = nextOfName(element, "layout")) {
        const _nDeckLayoutNode layout = layoutOf(element, md5s);
        const bool isShort = areShort({&layout.md5, &layout.fromdt, &layout.todt, &layout.eventType});
        if (!isShort || !nDeckIsFileName(layout.file) || !isTimeNow(layout))
            continue;
        if (layouts.size() < SCHEDULE_LAYOUT_LIMIT)
            layouts.push_back(layout);
        else
            ++beyond;
    }
    traceBeyond("layouts", beyond, SCHEDULE_LAYOUT_LIMIT);
}

void scheduleReader::GetMedias(nDeckNodeList& medias) const
{
    int beyond = 0;
    for (xmlElement* element = Entries("files", "file"); element; element = nextOfName(element, "file")) {
        if (attribute(element, "type") != "media")
            continue;
        const _nDeckFileNode media = mediaOf(element);
        if (!areShort({&media.md5, &media.size}) || !nDeckIsFileName(media.path))
            continue;
        if (medias.size() < SCHEDULE_MEDIA_LIMIT)
            medias.push_back(media);
        else
            ++beyond;
    }
    traceBeyond("media files", beyond, SCHEDULE_MEDIA_LIMIT);
}
