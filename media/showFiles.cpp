#include "media/showFiles.h"
#include "media/ScreenViewFile.h"
#include "media/photoAssistant.h"
#include "media/videoAssistant.h"
#include "support/host/box.h"
#include "support/host/language.h"

namespace {

constexpr int kBoxMs = 3000;

void tellNothingFound(int bMessage)
{
    if (bMessage)
        xMessageBox(Translate(HX_TR("Error")), Translate(HX_TR("No media found in this phone !")), BOX_NOTE,
                    nullptr, kBoxMs);
}

} // namespace

bool loadPhotos(photoAssistant& player, int bMessage)
{
    ScreenViewFile::FileList files;
    ScreenViewFile().GetImageFileList(files);
    if (player.LoadFileList(files))
        return true;
    tellNothingFound(bMessage);
    return false;
}

bool loadFilms(videoAssistant& player, int bMessage)
{
    ScreenViewFile::FileList files;
    ScreenViewFile().GetVideoFileList(files);
    if (!files.empty())
        return player.LoadFileList(files);
    tellNothingFound(bMessage);
    return false;
}
