#include "media/videoPreview.h"
#include "media/mediaShows.h"

void videoPreview::on_start_preview(bool bStill)
{
    if (!bStill)
        PreviewVideoFile(GetFile());
}
