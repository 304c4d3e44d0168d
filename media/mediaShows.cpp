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

bool isUpgrading()
{
    return CAutoUpgrade::GetInstance()->IsUpgrading() != 0;
}

void hideAndClose(QDialog* dialog)
{
    if (!dialog)
        return;
    dialog->hide();
    dialog->close();
}

} // namespace

HX_ROOM_HOOK(playImageFile, PlayImageFile);
HX_ROOM_HOOK(playVideoFile, PlayVideoFile);

int PreviewImageFile(const char* file)
{
    screenBringUp(new dlgImagePreview(file));
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
    if (isUpgrading())
        return 0;
    StopImagePlay();
    const QPointer<dlgImagePlay> dialog = new dlgImagePlay;
    if (dialog->LoadImage())
        screenBringUp(dialog);
    else if (dialog) // or another took its place while the user was told
        dialog->close();
    return 1;
}

int PlayVideoFile()
{
    if (isUpgrading())
        return 0;
    StopVideoPlay();
    const QPointer<dlgVideoPlay> dialog = new dlgVideoPlay;
    if (dialog->LoadVideo())
        screenBringUp(dialog);
    else if (dialog)
        dialog->Destruct();
    return 1;
}

void StartScreenSaver_ImageView()
{
    StopScreenSaver_ImageView();
    dlgImageScreen* dialog = new dlgImageScreen;
    if (dialog->LoadImage(0))
        screenBringUp(dialog);
    else
        dialog->close();
}

void StartScreenSaver_VideoView()
{
    phone_StopRing(0);
    StopScreenSaver_VideoView();
    dlgVideoScreen* dialog = new dlgVideoScreen;
    if (dialog->LoadVideo(0))
        screenBringUp(dialog);
    else
        dialog->Destruct();
}

void StopImagePlay()
{
    if (dlgImagePlay* dialog = dlgImagePlay::Instance())
        dialog->close();
    dlgImagePlay::ForgetInstance();
}

void StopVideoPlay()
{
    if (dlgVideoPlay* dialog = dlgVideoPlay::Instance())
        dialog->Destruct();
    dlgVideoPlay::ForgetInstance();
}

void StopPreviewVideo()
{
    if (dlgVideoPreview* dialog = dlgVideoPreview::Instance())
        dialog->Destruct();
}

void StopScreenSaver_ImageView()
{
    hideAndClose(dlgImageScreen::Instance());
}

void StopScreenSaver_VideoView()
{
    if (dlgVideoScreen* dialog = dlgVideoScreen::Instance()) {
        dialog->hide();
        dialog->Destruct();
    }
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
    hideAndClose(dlgScreenSleep::Instance());
}
