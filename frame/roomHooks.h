#pragma once
// What the frame calls in the rooms that stand on it. A room sets its own fields when it is loaded, with
// HX_ROOM_HOOK in the file that names its pages. A field that is null belongs to a room that is not there.
#include "support/host/object.h"
#include "support/text/chString.h"
#include <QRect>
#include <QString>

class QDialog;
class QWidget;
class IPCameraIconViewItem;
class qDialNumberItem;

enum MEDIA_FAMILY { MEDIA_FAMILY_IMAGE, MEDIA_FAMILY_VIDEO, MEDIA_FAMILY_SOUND };

struct tagRoomHooks
{
    // settings/system. A new page of the account; a new box for the item's number.
    QDialog* (*makeAccountPage)(int index) = nullptr;
    QDialog* (*makeDialNumberBox)(qDialNumberItem* item, QWidget* parent) = nullptr;
    // Asks for the administrator's password in a modal box; non-zero when it was given.
    int (*askAdminPassword)(QWidget* parent) = nullptr;

    // settings/call. A new door phone page that holds index; the camera page, filled but not shown; the
    // one speed dial page; dials the voice mail, or opens its page.
    QDialog* (*makeDoorPhonePage)(int index) = nullptr;
    QDialog* (*ipCameraPageOfItem)(QWidget* parent, IPCameraIconViewItem* item) = nullptr;
    QDialog* (*ipCameraPageOfTitle)(const QString& title) = nullptr;
    QDialog* (*speedDialPage)() = nullptr;
    int (*voiceMessageDialOut)() = nullptr;

    // media. Gives the media manager its title and icon and fills it with a section of the media table; the
    // players answer 0 when they cannot start.
    void (*loadMediaManager)(QDialog* page, const char* title, const char* icon, MEDIA_FAMILY family,
                             const char* section) = nullptr;
    int (*playImageFile)() = nullptr;
    int (*playVideoFile)() = nullptr;

    // settings/personal. The media manager is left after it may have changed wallpapers or ring tones: the
    // page that shows them as a choice fills it anew; nothing while getScreenSaverDlg() or getSoundDlg() has
    // no page.
    void (*reloadWallPaper)() = nullptr;
    void (*reloadSound)() = nullptr;

    // applets.
    void (*requestWeather)(chReferObject view, const chString& city) = nullptr;
    chString (*weatherCity)() = nullptr;

    // signage.
    int (*isNdeckEnable)() = nullptr;
    void (*ndeckSetAutoUpdateEnable)(int enable) = nullptr;
    void (*ndeckDownloadDisplayFrame)() = nullptr;
    int (*ndeckWindowDisplay)(int bShow, int type, QWidget* parent, QRect rect) = nullptr;
};

// Never changes after the module is loaded, but for tests. User-interface thread.
tagRoomHooks& roomHooks();

// At file scope: sets field `hook` before main() runs.
#define HX_ROOM_HOOK(hook, function)                                                                         \
    [[maybe_unused]] static const bool s_hook_##hook = ((roomHooks().hook = (function)), true)
