// Answers about the weather, in both forms. Whatever one holds, its texts are short lines, and one without a
// forecast has none.
#include "applets/weatherReader.h"
#include "fuzz/fuzzRoot.h"
#include "support/file/atomicSave.h"

namespace {

const char* const kAnswer = "/answer.xml";

void expectLine(const QString& text)
{
    expect(text.size() <= 4 * WeatherReader::TEXT_LIMIT);
    for (const QChar letter : text)
        expect(letter.category() != QChar::Other_Control);
}

void read(WeatherReader::FORM form, int unit)
{
    WeatherReader reader(form);
    tagMoreDaysInfo info;
    const bool isGood = reader.Read(kAnswer, unit, info);
    expect(isGood == (info.bConnected && info.bSiteFound));
    const QString days = info.strDate1 + info.strDate2 + info.strDate3;
    expect(isGood || (days + info.strStatus1 + info.strTemperature1 + info.strCurrentTemp).isEmpty());
    for (const QString& text :
         {info.strTemperature1, info.strTemperature2, info.strTemperature3, info.strStatus1, info.strStatus2,
          info.strStatus3, info.strDate1, info.strCurrentTemp})
        expectLine(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    expect(fileSaveAtomic(kAnswer, reinterpret_cast<const char*>(data), size));
    for (const int unit : {0, 1, 2}) {
        read(WeatherReader::FORM_PUBLIC, unit);
        read(WeatherReader::FORM_SIGNAGE, unit);
    }
    return 0;
}
