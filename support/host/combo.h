#pragma once
// Choices: what a person sees, and the "extern value" that is stored. User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QString>

class QComboBox;
class QRadioButton;

HX_HOST_API void qAddComboBoxItem(QComboBox* box, const char* label, const char* value);
HX_HOST_API void qAddComboBoxItem(QComboBox* box, const QString& label, const chString& value);
// Empty for an index out of range.
HX_HOST_API chString qGetExternValue(QComboBox* box, int index);
HX_HOST_API chString qGetExternValue(QRadioButton* button);
HX_HOST_API void qSetExternValue(QComboBox* box, int index, const char* value);
HX_HOST_API void qSetExternValue(QRadioButton* button, const char* value);
// Selects the item with that extern value: 1 when there is one, else 0 and the selection stays.
HX_HOST_API int qSelectComboBoxItem(QComboBox* box, const char* value);
// The same, with the item's index; -1 when there is none.
HX_HOST_API int qSelectComboBoxItemIsExist(QComboBox* box, const char* value);
// Fills the box with the files of one type of a media table; the extern value is the device path. The
// number of items.
HX_HOST_API int qFillMediaCommboView(QComboBox* box, const char* table, const char* type);
