#pragma once
#include "support/host/phone.h"
#include <QString>

// What a person calls a line, in the present language: "Line 1" for 0 to "Line 4" for 3, "Auto" for all else.
QString lineName(int line);
