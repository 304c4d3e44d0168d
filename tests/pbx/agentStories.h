#pragma once
// What two phones go through at whatever exchange they are registered at.
#include "tests/pbx/peerAgent.h"

// One calls the other by that id, who rings, answers and holds the call; its id at the other one.
uint32_t storyTalkAndHold(PeerAgent& caller, uint32_t id, PeerAgent& called);
// Calls that end without a word: the other one is busy, the caller gives up, nobody has the number 1009.
void storyWithoutAWord(PeerAgent& caller, PeerAgent& called);
// A call that rings at one whom the third watches is taken by that lamp, and talks.
void storyPickUpByLamp(PeerAgent& caller, PeerAgent& called, PeerAgent& watcher);
