#pragma once
// Background work of the phone's own threads.

enum : int { GIVE_WAY_PICTURES = 5, GIVE_WAY_TRANSFERS = 5 };

// The calling thread, and those that it starts, get less of the processor than what is shown, for good.
// nice: one of the values above.
void threadGiveWay(int nice);
