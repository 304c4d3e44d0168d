#pragma once
// The phone's own software modules, in the order of the page "Version Detail". They are built together and
// have one version.

inline constexpr const char* kOwnModules[] = {"hxPhone", "hxSetting", "hxHost",     "NUX",   "hxWeb",
                                              "hxMovie", "hxMedia",   "imageScale", "Theme", "Languages"};
