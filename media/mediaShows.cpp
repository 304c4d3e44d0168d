#include "media/mediaShows.h"
#include "frame/roomHooks.h"
#include "media/dlgImagePlay.h"
#include "media/dlgImagePreview.h"
#include "media/dlgImageScreen.h"
#include "media/dlgScreenSleep.h"
#include "media/dlgVideoPlay.h"
#include "media/dlgVideoPreview.h"
#include "media/dlgVideoScreen.h"
#include "support/host/phone.h"
#include "support/host/screen.h"
#include "support/host/upgrade.h"
#include <QPointer>

namespace {

template <class T>
void stop()
{
    if (T* dialog = T::Instance())
        dialog->Destruct();
}

template <class T>
void hideAndStop()
{
    if (T* dialog = T::Instance())
        dialog->hide();
    stop<T>();
}

// The show takes the place of the one before.
template <class T>
void stopShow()
{
    stop<T>();
    T::ForgetInstance();
}

template <class T>
int playShow(bool (T::*load)())
{
    if (CAutoUpgrade::GetInstance()->IsUpgrading())
        return 0;
    stopShow<T>();
    const QPointer<T> dialog = new T;
    if ((dialog->*load)())
        screenBringUp(dialog);
    else if (dialog) // or another took its place while the user was told
        dialog->Destruct();
    return 1;
}

template <class T>
void startSaver(bool (T::*load)(int))
{
    hideAndStop<T>();
    T* dialog = new T;
    if ((dialog->*load)(0))
        screenBringUp(dialog);
    else
        dialog->Destruct();
}

} // namespace

HX_ROOM_HOOK(playImageFile, PlayImageFile);
HX_ROOM_HOOK(playVideoFile, PlayVideoFile);

int PreviewImageFile(const char* file)
{
    return PreviewImageFile(file, QPixmap());
}

int PreviewImageFile(const char* file, const QPixmap& picture)
{
    screenBringUp(new dlgImagePreview(file, picture));
    return 1;
}

int PreviewVideoFile(const char* file)
{
    StopPreviewVideo();
    dlgVideoPreview* dialog = new dlgVideoPreview;
    dialog->LoadVideoFile(file);
    screenBringUp(dialog);
    return 1;
}

int PlayImageFile()
{
    return playShow(&dlgImagePlay::LoadImage);
}

int PlayVideoFile()
{
    return playShow(&dlgVideoPlay::LoadVideo);
}

void StartScreenSaver_ImageView()
{
    startSaver(&dlgImageScreen::LoadImage);
}

void StartScreenSaver_VideoView()
{
    phone_StopRing(0);
    startSaver(&dlgVideoScreen::LoadVideo);
}

void StopImagePlay()
{
    stopShow<dlgImagePlay>();
}

void StopVideoPlay()
{
    stopShow<dlgVideoPlay>();
}

void StopPreviewVideo()
{
    stop<dlgVideoPreview>();
}

void StopScreenSaver_ImageView()
{
    hideAndStop<dlgImageScreen>();
}

void StopScreenSaver_VideoView()
{
    hideAndStop<dlgVideoScreen>();
}

void Stop_ImageView()
{
    StopImagePlay();
    StopScreenSaver_ImageView();
}

void Stop_VideoView()
{
    StopPreviewVideo();
    StopVideoPlay();
    StopScreenSaver_VideoView();
}

int OpenScreenSleepDlg()
{
    CloseScreenSleepDlg();
    screenBringUp(new dlgScreenSleep);
    return 1;
}

void CloseScreenSleepDlg()
{
    hideAndStop<dlgScreenSleep>();
}
