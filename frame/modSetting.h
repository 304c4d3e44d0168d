#pragma once
// The module's front door: what the host calls. User-interface thread. No entry reports an error; what
// cannot be opened is told to the user, or traced.
#include "support/host/api.h"
#include "support/host/leftbar.h"
#include "support/host/object.h"
#include "support/text/chString.h"

class IPCameraIconViewItem;
class QString;
class QWidget;
class qDialNumberItem;
class qIconView;

// Opens the page of that name. parent: of the boxes that it may show first. info: picture and title of the
// icon that was touched.
HX_MODULE_API void settingOpenPage(const chString& name, QWidget* parent);
HX_MODULE_API void settingOpenPage(const chString& name, tagLeftBarInfo info, QWidget* parent);

// Opens a directory view: the local phone book; the remote one, titled a, that is found at url b; the LDAP
// search, titled a. Any other type opens nothing.
enum DIRECTORY_VIEW { DIRECTORY_LOCAL = 0, DIRECTORY_REMOTE = 1, DIRECTORY_LDAP = 2 };
HX_MODULE_API void settingOpenPage(int type, chString a, chString b, QWidget* parent);

// The box that sets the number of a dial item, and the camera page, filled from a menu item.
HX_MODULE_API void settingDialNum(qDialNumberItem* item, QWidget* parent);
HX_MODULE_API void settingIpCamera(IPCameraIconViewItem* item, QWidget* parent);
// kind begins with "SettingIPCamera": the camera page of that title. Anything else opens nothing.
HX_MODULE_API void settingIpCamera_DoorPhone(const QString& kind, const QString& title, QWidget* parent);

// Whether the user may do what asks for that level. For "admin" he is asked for the administrator's password,
// in a modal box upon parent: 1 when he gave it, else 0. Any other level, "Admin" too, is 1 at once. A module
// without the box tells the user so, and answers 0.
HX_MODULE_API int settingPromptUserLevel(const QString& level, QWidget* parent);

// Shows the menu of a file such as "setting.xml"; loads the menu's file again if it was made.
HX_MODULE_API void settingOpenXml(const chString& file);
HX_MODULE_API void RefreshOpenXml(const chString& file);
// Shows a menu that the host knows by name; 0 when it cannot be made.
HX_MODULE_API int settingOpenFrame(const chString& name);

// Builds one group of windows during the boot, hidden. index: 0 to 7, or -1 for all of them in order. 1 when
// there is such a group.
HX_MODULE_API int settingCacheWindows(int index);

// The grid of the menu that was made last; null when that one, or any other, was destroyed since.
HX_MODULE_API qIconView* getIconView();
// Loads that grid's menu again.
HX_MODULE_API void onRefreshIconView();

// Asks for the weather of a city; the answer is told to the view, an MVCView that lives until then or says
// what it is by its name. Nothing without the room of the weather.
HX_MODULE_API void settingRequestWeather(chReferObject view, const chString& city);
// The city that was asked for last, which a forecast is for; empty without that room.
HX_MODULE_API chString settingWeatherCity();
