#pragma once
// The transfer of a schedule; its type alone says so.
#include "support/host/http.h"

class nDeckDisplayFrameAction : public HttpAction
{
public:
    ~nDeckDisplayFrameAction() override;
};
