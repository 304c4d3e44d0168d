#pragma once
// Conversions between the phone's UTF-8 text and the toolkit's. Any thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QString>

HX_HOST_API QString toQString(const chString& text);
HX_HOST_API chString fromQString(const QString& text);
