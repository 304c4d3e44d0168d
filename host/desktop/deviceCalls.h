#pragma once
// Tells the rules of calls which door phones and cameras there are. User-interface thread.

void deviceCallsInstall();
