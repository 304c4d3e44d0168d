#include "support/host/upgrade.h"

CAutoUpgrade* CAutoUpgrade::GetInstance()
{
    static CAutoUpgrade upgrade;
    return &upgrade;
}
