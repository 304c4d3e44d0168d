#pragma once
#include "support/host/object.h"

// What a request or a reply carries through the request path.
class MVCData : public chObject
{
public:
    ~MVCData() override;
};
