#include "players/keyTone.h"
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr char kKeys[] = "123A456B789C*0#D"; // row by row
constexpr int kColumns = 4;
constexpr double kRowHertz[] = {697, 770, 852, 941};
constexpr double kColumnHertz[] = {1209, 1336, 1477, 1633};
constexpr double kSeconds = 0.18;
constexpr double kRampSeconds = 0.005;
constexpr double kLoud = 0.4; // of full scale, each
constexpr double kTurn = 6.283185307179586;

} // namespace

std::vector<float> keyTone(int key, int rate)
{
    const char* place = key > 0 && key < 128 ? strchr(kKeys, key) : nullptr;
    if (!place)
        return {};
    const double row = kRowHertz[(place - kKeys) / kColumns];
    const double column = kColumnHertz[(place - kKeys) % kColumns];
    std::vector<float> samples(size_t(kSeconds * rate));
    for (size_t i = 0; i < samples.size(); ++i) {
        const double at = double(i) / rate;
        const double left = double(samples.size() - 1 - i) / rate;
        const double shape = std::min(1.0, std::min(at, left) / kRampSeconds);
        samples[i] = float(kLoud * shape * (std::sin(kTurn * row * at) + std::sin(kTurn * column * at)));
    }
    return samples;
}
