// Schedules of a signage server. Whatever one holds, the lists stay within their bounds, their texts are
// short, and no name leads out of the folder or to one of the client's own files.
#include "fuzz/fuzzRoot.h"
#include "signage/nDeckFolder.h"
#include "signage/scheduleReader.h"
#include "support/file/atomicSave.h"

namespace {

const char* const kSchedule = "/FileList.xml";

void expectShort(const chString& text)
{
    expect(text.GetLength() <= SCHEDULE_TEXT_LIMIT);
}

void checkLayouts(const scheduleReader& reader)
{
    nDeckLayoutList layouts;
    reader.GetLayouts(layouts);
    expect(layouts.size() <= SCHEDULE_LAYOUT_LIMIT);
    for (const _nDeckLayoutNode& layout : layouts) {
        expect(nDeckIsFileName(layout.file));
        for (const chString& text : {layout.md5, layout.fromdt, layout.todt, layout.eventType})
            expectShort(text);
        expect(layout.bMeeting == 0 || layout.bMeeting == 1);
    }
}

void checkMedias(const scheduleReader& reader)
{
    nDeckNodeList medias;
    reader.GetMedias(medias);
    expect(medias.size() <= SCHEDULE_MEDIA_LIMIT);
    for (const _nDeckFileNode& media : medias) {
        expect(nDeckIsFileName(media.path));
        expect(media.type == "media");
        expectShort(media.md5);
        expectShort(media.size);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    expect(fileSaveAtomic(kSchedule, reinterpret_cast<const char*>(data), size));
    const scheduleReader reader(kSchedule);
    expect(reader.IsEmpty() == (size == 0 || size > NDECK_SCHEDULE_LIMIT));
    expect(!(reader.IsEmpty() && reader.IsValid()));
    reader.HasResult("error");
    reader.HasResult("success");
    checkLayouts(reader);
    checkMedias(reader);
    return 0;
}
