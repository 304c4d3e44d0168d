#pragma once
// The view of a model, a view and a controller: what a controller delivers its answers to.
#include "support/host/api.h"
#include "support/host/object.h"
#include "support/text/chString.h"

// A mix-in base of dialogs and frames, counted as they are asked for; never deleted by that count unless
// SetCreatFlag(1) says so.
class HX_HOST_API MVCView : public chObject
{
public:
    explicit MVCView(const char* name);
    ~MVCView() override;

    chString strViewName; // controllers choose by it how to deliver; the view may change it
};
