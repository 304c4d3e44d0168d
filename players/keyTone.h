#pragma once
#include <vector>

// The two sounds of a DTMF key, a short while, without a click at either end. key: its character, '0' to '9',
// '*', '#', 'A' to 'D'; for any other it is empty. rate: samples a second.
std::vector<float> keyTone(int key, int rate);
