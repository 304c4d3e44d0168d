#pragma once
// A raw touch device and its samples.
#include <sys/time.h>

struct ts_sample
{
    int x = 0; // as the panel counts
    int y = 0;
    unsigned int pressure = 0; // 0: no finger
    struct timeval tv = {};
};

struct tsdev;
struct ts_module;

struct ts_module_ops
{
    int (*read)(ts_module* module, ts_sample* samples, int count);
};

// A link of the chain through which samples come.
struct ts_module
{
    tsdev* dev = nullptr;
    ts_module* next = nullptr;
    const ts_module_ops* ops = nullptr;
};

struct tsdev
{
    int fd = -1;
    ts_module* list = nullptr; // the first of the chain
};
