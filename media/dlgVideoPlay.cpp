#include "media/dlgVideoPlay.h"
#include "media/showFiles.h"
#include "media/videoAssistant.h"

dlgVideoPlay::dlgVideoPlay() : VideoDialog(0)
{
    setObjectName("dlgVideoPlay");
}

bool dlgVideoPlay::LoadVideo()
{
    return loadFilms(Video(), 1);
}

void dlgVideoPlay::OnKeyDown(int key)
{
    if (TryPlayerKey(key))
        return;
    if (key == Qt::Key_Left)
        Video().PlayLast();
    else if (key == Qt::Key_Right)
        Video().PlayNext();
    else
        EndShowByKeyDown(key);
}

void dlgVideoPlay::OnKeyUp(int key)
{
    EndShowByKeyUp(key);
}

void dlgVideoPlay::OnStorageGone()
{
    Destruct();
}
