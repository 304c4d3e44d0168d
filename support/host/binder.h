#pragma once
// Ties widgets to configuration keys. User-interface thread. Widgets are not owned, and live as long as
// the binder.
#include "support/container/chList.h"
#include "support/host/api.h"
#include "support/host/registry.h"
#include "support/text/chString.h"

class QWidget;

struct qConfigPair
{
    QWidget* pWidget = nullptr;
    HREGISTRY hRegistry = nullptr;
    chString strKey;
    chString strDefault;
};

// What is stored: of a QLineEdit its text, of a QCheckBox "1" or "0", of a QComboBox the extern value of
// its current item, of a QRadioButton the extern value of the checked one of its group. Where nothing is
// stored (the empty text), a choice shows its first item, as a check box shows no tick; a value that no item
// has shows none. What a widget shows in place of the stored value is no difference: it is not written.
class HX_HOST_API qConfigBinder : public chObjList_dynamic<qConfigPair, 16>
{
public:
    virtual ~qConfigBinder();
    // Appends a pair and loads the stored value, or def, into the widget.
    void BindWidget(QWidget* widget, HREGISTRY section, const char* key, const char* def);
    // Loads every bound widget again; edits that were not saved are dropped.
    void ResetConfigsToRegistry();
    // Writes every bound widget's value; non-zero exactly when at least one differed from the stored one.
    int SaveConfigsToRegistry();
    // 0 while a bound widget's value is not the stored one: after SaveConfigsToRegistry(), when that could
    // not write everything.
    int AreConfigsSaved();
    // True when the widget's value differs from the stored one; false for a widget that is not bound.
    bool doesWidgetValueChanged(QWidget* widget);
    // The value as it would be stored.
    chString GetWidgetValue(QWidget* widget);
};
