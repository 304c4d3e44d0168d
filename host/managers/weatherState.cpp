#include "host/managers/weatherState.h"
#include "support/host/registry.h"
#include "support/host/text.h"

namespace {
const char kUserConfig[] = "/rundata/config/user/user.ini";
}

WeatherState::WeatherState()
{
    Read();
}

void WeatherState::Read()
{
    m_bShown = nuxGetRegistryInt(kUserConfig, "Weather", "bDesktop", 0) != 0;
    m_strCity =
        toQString(NUX_SubClass::nuxGetRegistryString(kUserConfig, "Weather", "strDefaultCity", "London"));
}

void WeatherState::Request()
{
    Read();
    emit requested();
}

WeatherState* weatherState()
{
    static WeatherState state;
    return &state;
}
