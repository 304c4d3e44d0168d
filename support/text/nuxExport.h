#pragma once

// libNUX hides everything that is not marked with this.
#define NUX_API __attribute__((visibility("default")))
