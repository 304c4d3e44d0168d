#pragma once
// Pictures of any size, for wallpapers, previews and shows: read on another thread, in the size in which they
// are shown. A picture that is damaged, cut short or too large costs no more than a look at its beginning, or
// the time and memory of one that is not. What a camera says about the way up is followed.
// User-interface thread.
#include "support/host/api.h"
#include "support/text/chString.h"
#include <QPixmap>
#include <functional>

class QObject;

enum PICTURE_FIT {
    PICTURE_FIT_INSIDE, // the shape kept, inside of the room; never enlarged
    PICTURE_FIT_SIDES,  // each side at most the room's, for whoever stretches it; never enlarged
    PICTURE_FIT_EXACT,  // stretched to the room
    PICTURE_FIT_COVER   // the shape kept, the room filled with the middle; enlarged if need be
};

enum PICTURE_RESULT {
    PICTURE_READ = 0,
    PICTURE_MISSING,   // not there, or it cannot be opened now
    PICTURE_DAMAGED,   // no picture of a kind that is shown, damaged, or cut short
    PICTURE_TOO_LARGE, // more pixels or bytes than are taken
    PICTURE_TOO_SLOW,  // given up
    PICTURE_REFUSED    // by the wish's own check
};

// Pixels of a room; more is cut.
enum : int { PICTURE_ROOM_WIDTH = 2400, PICTURE_ROOM_HEIGHT = 1440 };

struct tagPictureWish
{
    chString strPath; // device path of a JPEG, PNG, BMP or GIF, of which the first frame is taken
    int nWidth = 0;   // of the room, in pixels
    int nHeight = 0;
    PICTURE_FIT eFit = PICTURE_FIT_INSIDE;
    // Whether the file may be read, asked on the other thread before it is: PICTURE_READ, or else what is
    // told. Null: it may.
    PICTURE_RESULT (*check)(const char* path) = nullptr;
};

// The pixmap is null unless the result is PICTURE_READ.
using PictureTold = std::function<void(PICTURE_RESULT result, const QPixmap& picture)>;

// Reads the picture and tells it, never before the call is over; of many, those asked for last come first.
// Nothing is told when the owner is gone by then. The number is for pictureCancel, and never 0.
HX_HOST_API int pictureRequest(const tagPictureWish& wish, QObject* owner, PictureTold told);
// Nothing is told any more. A number that is done, or 0, does nothing.
HX_HOST_API void pictureCancel(int request);
// Reads it ahead, behind all that is requested; of many, the sixteen asked for last.
HX_HOST_API void picturePrepare(const tagPictureWish& wish);
// True when it is known without waiting: it was read before and has not changed, or it is so small that
// reading it takes less than a frame. result: what pictureRequest would tell.
HX_HOST_API bool pictureAtOnce(const tagPictureWish& wish, PICTURE_RESULT& result, QPixmap& picture);
// What is known without waiting is told before the call is over, and 0 answered; everything else as by
// pictureRequest.
HX_HOST_API int pictureTell(const tagPictureWish& wish, QObject* owner, const PictureTold& told);
// What the file of a picture holds that was read by that wish; false when it was not, or has changed since.
struct tagPictureFacts
{
    int nWidth = 0; // pixels, the way up followed
    int nHeight = 0;
    long long nBytes = 0;
};
HX_HOST_API bool pictureFacts(const tagPictureWish& wish, tagPictureFacts& facts);
// How many pictures are still to be read.
HX_HOST_API int picturePending();
