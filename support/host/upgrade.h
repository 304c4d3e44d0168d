#pragma once
#include "support/host/api.h"

// Firmware update. User-interface thread.
class HX_HOST_API CAutoUpgrade
{
public:
    static CAutoUpgrade* GetInstance();
    int IsUpgrading() const { return m_nUpgrading; }
    void SetUpgrading(int upgrading) { m_nUpgrading = upgrading; }

private:
    int m_nUpgrading = 0;
};
