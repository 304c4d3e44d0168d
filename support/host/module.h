#pragma once
// How the host reaches the module: its exported entry points, handed over once by the main program.
#include "support/host/api.h"
#include "support/host/leftbar.h"
#include "support/text/chString.h"

class qIconView;

struct tagModuleEntries
{
    void (*openPage)(const chString& name, QWidget* parent) = nullptr;
    void (*openPageWithInfo)(const chString& name, tagLeftBarInfo info, QWidget* parent) = nullptr;
    void (*openDirectory)(int type, chString first, chString second, QWidget* parent) = nullptr;
    void (*openMenu)(const chString& file) = nullptr;
    int (*openFrame)(const chString& name) = nullptr;
    void (*refreshMenu)(const chString& file) = nullptr;
    int (*cacheWindows)(int index) = nullptr;
    qIconView* (*iconView)() = nullptr;
};

// User-interface thread, before the first window is shown. The record is copied.
HX_HOST_API void hostSetModule(const tagModuleEntries& entries);
// The entries handed over; all null before.
HX_HOST_API const tagModuleEntries& hostModule();
