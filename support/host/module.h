#pragma once
// How the host reaches the module: its exported entry points, handed over once by the main program.
#include "support/host/api.h"
#include "support/host/leftbar.h"
#include "support/host/message.h"
#include "support/host/object.h"
#include "support/host/signage.h"
#include "support/text/chString.h"
#include <QRect>

class IPCameraIconViewItem;
class PicDialIconViewItem;
class QDialog;
class QString;
class qDialNumberItem;
class qIconView;
struct VOICE_PARAM;

struct tagModuleEntries
{
    void (*openPage)(const chString& name, QWidget* parent) = nullptr;
    void (*openPageWithInfo)(const chString& name, tagLeftBarInfo info, QWidget* parent) = nullptr;
    void (*openDirectory)(int type, chString first, chString second, QWidget* parent) = nullptr;
    void (*openMenu)(const chString& file) = nullptr;
    int (*openFrame)(const chString& name) = nullptr;
    void (*refreshMenu)(const chString& file) = nullptr;
    int (*cacheWindows)(int index) = nullptr;
    qIconView* (*iconView)() = nullptr;
    // Whether the user may do what asks for that level; "admin" asks him for the administrator's password.
    int (*promptUserLevel)(const QString& level, QWidget* parent) = nullptr;
    // The page "Dial Plan", which has no name to be opened by. info: kept by pointer, see tagLeftBarInfo.
    QDialog* (*makeDialPlan)(tagLeftBarInfo* info) = nullptr;
    // The box that sets the number of an item.
    void (*setDialNumber)(qDialNumberItem* item, QWidget* parent) = nullptr;
    // The page of a camera, and that of the pictures that dial, at the slot of one of them. What they need of
    // the item they copy.
    void (*editCamera)(IPCameraIconViewItem* item, QWidget* parent) = nullptr;
    void (*editPictureDial)(PicDialIconViewItem* item) = nullptr;
    // The editor of a programmable key, from 0 on; the list of speed dials, at that key.
    void (*editDssKey)(int index) = nullptr;
    void (*openSpeedDials)(int index) = nullptr;
    // Somebody else has changed the list of stocks: the page that was built shows it; 0 while there is none.
    int (*updateStockData)() = nullptr;

    // Savers of pictures and of films, and the black screen: over the whole screen, until a key or a touch.
    // One that has nothing to show does not come up.
    void (*startPhotoSaver)() = nullptr;
    void (*stopPhotoSaver)() = nullptr;
    void (*startFilmSaver)() = nullptr;
    void (*stopFilmSaver)() = nullptr;
    int (*openSleep)() = nullptr;
    void (*closeSleep)() = nullptr;

    // Signage. Asks the server for this display; ends the client; shows or hides its frame in a window of the
    // host's (null: full screen).
    void (*registerDisplay)() = nullptr;
    void (*unLaunchDisplay)() = nullptr;
    bool (*windowDisplay)(int bShow, E_NDECKWINDOW_TYPE type, QWidget* parent, QRect rect) = nullptr;
    bool (*isDisplayEnabled)() = nullptr;
    bool (*isDisplaySaverEnabled)() = nullptr;    // the show takes the place of the screen saver
    bool (*isDisplayTalkEnabled)() = nullptr;     // it shows while a call talks
    bool (*isDisplayRingBackEnabled)() = nullptr; // it shows while the other side rings
    // A call takes the media server (its record, its session) or gives it up (null); what the player says.
    bool (*setPlayParam)(VOICE_PARAM* param, int session) = nullptr;
    int (*onMovieMessage)(msgObject& msg) = nullptr;

    // Asks for the weather of a city, for a view of the host's: the WeatherFrame.
    void (*requestWeather)(chReferObject view, const chString& city) = nullptr;
    // The city of the forecast that is being told: who asks last has the answer told to all who wait.
    chString (*weatherCity)() = nullptr;
};

// User-interface thread, before the first window is shown. The record is copied.
HX_HOST_API void hostSetModule(const tagModuleEntries& entries);
// The entries handed over; all null before.
HX_HOST_API const tagModuleEntries& hostModule();
