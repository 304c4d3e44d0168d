#pragma once
// Whether the engine's processes can be locked in. Any thread.

enum SANDBOX_STATE {
    SANDBOX_ON,
    SANDBOX_OFF,    // the phone runs as root: the engine refuses to start with it
    SANDBOX_MISSING // the kernel gives no user namespaces: the engine would end the phone
};
SANDBOX_STATE sandboxState();
