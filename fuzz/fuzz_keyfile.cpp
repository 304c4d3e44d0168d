// Key files, from backups, provisioning and editors. One that is understood is written back as it was, and
// a change of one key leaves all others as they were.
#include "fuzz/fuzzRoot.h"
#include "host/services/keyfiles/keyFile.h"
#include <map>

namespace {

using Values = std::map<std::string, std::map<std::string, std::string>>;

// The sections that the input and the change name.
Values valuesOf(const keyFile& file, std::string_view text, std::string_view changed)
{
    Values values;
    values[""] = file.SectionValues("");
    values[std::string(changed)] = file.SectionValues(changed);
    for (size_t start = text.find('['); start != std::string_view::npos; start = text.find('[', start + 1)) {
        const std::string name(text.substr(start + 1, text.find(']', start) - start - 1));
        values[name] = file.SectionValues(name);
        if (values.size() > 64)
            break;
    }
    return values;
}

void change(const keyFile& file, std::string_view text, std::string_view section, std::string_view key,
            std::string_view value)
{
    keyFile changed = file;
    if (!changed.Set(section, key, value)) {
        expect(changed.Text() == file.Text());
        return;
    }
    const std::string written = changed.Text();
    keyFile again;
    expect(written.size() > keyFile::SIZE_LIMIT || again.Parse(written));
    const std::string* found = again.Find(section, key);
    expect(found && *found == value && *changed.Find(section, key) == value);
    // With the value put back, or the key known to be new, nothing else has changed.
    keyFile reference = file;
    expect(reference.Set(section, key, value));
    expect(valuesOf(again, text, section) == valuesOf(reference, text, section));
    for (const auto& [name, values] : valuesOf(file, text, section)) {
        for (const auto& [oldKey, oldValue] : values) {
            const std::string* now = again.Find(name, oldKey);
            expect(now && (*now == oldValue || *now == value));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    keyFile file;
    if (!file.Parse(text)) {
        expect(file.Text().empty());
        return 0;
    }
    expect(file.Text() == text);
    const std::string_view end = text.substr(text.size() - std::min<size_t>(text.size(), 24));
    change(file, text, "Network", "strWanIP", "1.2.3.4");
    change(file, text, end.substr(0, end.size() / 3), end.substr(end.size() / 3, end.size() / 3),
           end.substr(end.size() / 3 * 2));
    change(file, text, "", end, end);
    change(file, text, end, "k", end);
    return 0;
}
