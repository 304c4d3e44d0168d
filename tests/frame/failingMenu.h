#pragma once
// While it lives, the host cannot make any menu by name. The reference host always can make the one it
// knows, so the linker leads the module's call over this switch.

class FailingMenu
{
public:
    FailingMenu();
    ~FailingMenu();
    FailingMenu(const FailingMenu&) = delete;
    FailingMenu& operator=(const FailingMenu&) = delete;
};
