#pragma once
// What pages and host call to play media over the whole screen. Files are device paths. User-interface
// thread.
#include "support/host/api.h"

class QPixmap;

// A picture; a film, in the place of the one before. Both answer 1.
HX_MODULE_API int PreviewImageFile(const char* file);
HX_MODULE_API int PreviewVideoFile(const char* file);
// The same with the picture that was read of the file for the whole screen.
int PreviewImageFile(const char* file, const QPixmap& picture);

// What "/phone/resource/screenview.xml" names, as a show or as a screen saver. A show answers 0 while the
// firmware is updated, and 1 otherwise, also when the user was told that there is nothing to play.
HX_MODULE_API int PlayImageFile();
HX_MODULE_API int PlayVideoFile();
HX_MODULE_API void StartScreenSaver_ImageView();
HX_MODULE_API void StartScreenSaver_VideoView();

HX_MODULE_API void StopImagePlay();
HX_MODULE_API void StopVideoPlay();
HX_MODULE_API void StopPreviewVideo();
HX_MODULE_API void StopScreenSaver_ImageView();
HX_MODULE_API void StopScreenSaver_VideoView();
// All shows and savers of pictures; of films.
HX_MODULE_API void Stop_ImageView();
HX_MODULE_API void Stop_VideoView();

// A black screen, until a key or a touch. Answers 1.
HX_MODULE_API int OpenScreenSleepDlg();
HX_MODULE_API void CloseScreenSleepDlg();
