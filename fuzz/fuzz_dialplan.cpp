// A number that somebody brings in, and the dial plan that a disk may have damaged: what is dialled in the
// end is a number or nothing, and the file stays as it is. The first line is the number, the rest the file.
#include "fuzz/fuzzRoot.h"
#include "host/services/phone/callNumber.h"
#include "host/services/phone/dialPlan.h"
#include "support/file/atomicSave.h"
#include "support/file/fileTools.h"
#include "support/file/keepAside.h"
#include "support/file/path.h"
#include <QByteArray>
#include <string>

namespace {

const char* const kPlan = "/rundata/data/dialplan.xml";

struct Root : FuzzRoot
{
    Root()
    {
        fileSetReportSink([](const char*) {});
        expect(pathMakeDirectories("/rundata/data"));
    }
};

void expectHarmless(const QString& number)
{
    expect(number.size() <= CALL_NUMBER_MAX);
    for (const QChar letter : number) {
        expect(!letter.isSpace() && letter.category() != QChar::Other_Control);
        expect(!QStringLiteral("\"'`/\\<>").contains(letter));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static Root root;
    const QByteArray all(reinterpret_cast<const char*>(data), qsizetype(size));
    const qsizetype end = all.indexOf('\n');
    const QString typed = QString::fromUtf8(all.left(end));
    const QByteArray file = end < 0 ? QByteArray() : all.mid(end + 1);
    expect(fileSaveAtomic(kPlan, file.constData(), size_t(file.size())));
    dialPlan plan;
    const QString number = callNumberOf(typed);
    expectHarmless(number);
    expectHarmless(callNumberOf(plan.rewrite(number)));
    for (const QChar letter : callTextOf(typed))
        expect(letter.category() != QChar::Other_Control);
    std::string after;
    expect(fileReadWhole(kPlan, after) && after == file.toStdString());
    return 0;
}
