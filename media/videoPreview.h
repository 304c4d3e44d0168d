#pragma once
// A film never starts by itself, only over the whole screen. User-interface thread.
#include "media/basePreview.h"

class videoPreview : public basePreview
{
    Q_OBJECT
public:
    using basePreview::basePreview;
    void on_start_preview(bool bStill) override;
};
