// The file that names the public feed of the weather: an address comes from it whole or not at all.
#include "applets/feed.h"
#include "fuzz/fuzzRoot.h"
#include "support/file/atomicSave.h"
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, size_t size)
{
    static FuzzRoot root;
    const char* const file = "/WeatherSource.xml";
    expect(fileSaveAtomic(file, reinterpret_cast<const char*>(data), size));
    chString address = "before";
    const FEED_SOURCE found = feedSourceAddress(file, "WeatherSource", "source", FEED_PUBLIC_TITLE, address);
    expect(found == FEED_SOURCE_FOUND || address == "before");
    const std::string filled = feedFillIn(address, "#city", "x").GetText();
    expect(filled.find("#city") == std::string::npos || address.GetLength() > int(filled.size()));
    expect(int(filled.size()) <= address.GetLength());
    return 0;
}
