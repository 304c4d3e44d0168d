#pragma once
#include "support/host/object.h"

// Stands between the views that ask and the logic that finds out, one for each applet and process.
class MVCController : public chObjectProcesser
{
public:
    ~MVCController() override;
};
