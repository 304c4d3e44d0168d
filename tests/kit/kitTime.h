#pragma once
namespace kit {
void moveClocks(long long ms);
}
