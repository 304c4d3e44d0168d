#include "host/binding/widgetValue.h"
#include "support/host/binder.h"
#include "support/host/text.h"
#include "support/host/trace.h"
#include <QVector>
#include <QWidget>
#include <algorithm>

namespace {

QString storedText(const qConfigPair& pair)
{
    return toQString(registryGetString(pair.hRegistry, pair.strKey, pair.strDefault));
}

void load(const qConfigPair& pair)
{
    setWidgetValue(pair.pWidget, storedText(pair));
}

// A choice of which nothing is chosen keeps what is stored.
bool isChanged(const qConfigPair& pair)
{
    const std::optional<QString> value = widgetValue(pair.pWidget);
    return value && value != widgetFormOf(pair.pWidget, storedText(pair));
}

struct SectionChanges
{
    HREGISTRY hRegistry;
    QVector<tagRegistryValue> values;
};

void addChange(QVector<SectionChanges>& sections, const qConfigPair& pair)
{
    const tagRegistryValue value{pair.strKey, fromQString(*widgetValue(pair.pWidget))};
    for (SectionChanges& section : sections) {
        if (section.hRegistry == pair.hRegistry) {
            section.values.append(value);
            return;
        }
    }
    sections.append({pair.hRegistry, {value}});
}

const qConfigPair* findPair(const qConfigBinder& binder, const QWidget* widget)
{
    for (const qConfigPair& pair : binder) {
        if (pair.pWidget == widget)
            return &pair;
    }
    return nullptr;
}

} // namespace

qConfigBinder::~qConfigBinder() = default;

void qConfigBinder::BindWidget(QWidget* widget, HREGISTRY section, const char* key, const char* def)
{
    if (!NUX_ASSERT(widget != nullptr && section != nullptr, "widget != NULL && section != NULL"))
        return;
    qConfigPair pair{widget, section, chString(key), chString(def)};
    load(pair);
    append(pair);
}

void qConfigBinder::ResetConfigsToRegistry()
{
    for (const qConfigPair& pair : *this)
        load(pair);
}

// A section that could not be saved is traced and counts as not changed: the store has the old values.
int qConfigBinder::SaveConfigsToRegistry()
{
    QVector<SectionChanges> sections;
    for (const qConfigPair& pair : *this) {
        if (isChanged(pair))
            addChange(sections, pair);
    }
    int saved = 0;
    for (const SectionChanges& section : sections) {
        const int count = int(section.values.size());
        if (registrySetStrings(section.hRegistry, section.values.constData(), count))
            saved += count;
        else
            nuxTrace(TRACE_NOTE, "settings not saved, first key %s", section.values.first().strKey.GetText());
    }
    return saved != 0;
}

int qConfigBinder::AreConfigsSaved()
{
    return std::none_of(begin(), end(), isChanged);
}

bool qConfigBinder::doesWidgetValueChanged(QWidget* widget)
{
    const qConfigPair* pair = findPair(*this, widget);
    return pair && isChanged(*pair);
}

chString qConfigBinder::GetWidgetValue(QWidget* widget)
{
    const std::optional<QString> value = widgetValue(widget);
    if (value)
        return fromQString(*value);
    const qConfigPair* pair = findPair(*this, widget);
    return pair ? registryGetString(pair->hRegistry, pair->strKey, pair->strDefault) : chString();
}
