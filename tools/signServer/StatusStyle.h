#pragma once
// The look of the status page: the phone's colours and corners.
extern const char* const StatusStyle;
