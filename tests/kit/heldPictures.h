#pragma once
// While one of these is there no picture is read that takes more than a moment: what is asked for waits.
// User- interface thread.
#include "support/host/picture.h"
#include "tests/kit/phoneTest.h"
#include <QObject>
#include <QSemaphore>

namespace kit {

class HeldPictures
{
public:
    HeldPictures()
    {
        tagPictureWish wish;
        wish.strPath = "/rundata";
        wish.check = hold;
        pictureRequest(wish, &m_owner, [](PICTURE_RESULT, const QPixmap&) {});
        EXPECT_TRUE(waitUntil([] { return held().tryAcquire(); }, 20000));
    }
    ~HeldPictures() { released().release(); }
    HeldPictures(const HeldPictures&) = delete;
    HeldPictures& operator=(const HeldPictures&) = delete;

private:
    static QSemaphore& held()
    {
        static QSemaphore semaphore;
        return semaphore;
    }
    static QSemaphore& released()
    {
        static QSemaphore semaphore;
        return semaphore;
    }
    // The only thread that reads stays here. Nothing is remembered of a file that could not be opened.
    static PICTURE_RESULT hold(const char*)
    {
        held().release();
        released().acquire();
        return PICTURE_MISSING;
    }

    QObject m_owner;
};

} // namespace kit
