#pragma once
// Two sides of a call's pictures, with a numbered picture as the camera's.
#include "tests/calls/callStand.h"
#include "tests/calls/lossyWay.h"
#include "tests/players/pictureSide.h"
#include <QTemporaryDir>

class PictureStand : public CallStand
{
protected:
    PictureStand() { setSource(165); }
    ~PictureStand() override { qunsetenv("HX_PICTURE_SOURCE"); }
    void setSource(int number);
    static tagMediaWant video(bool camera = true);
    static void connect(PictureSide& from, PictureSide& to, tagMediaWant want, tagMediaWant answered,
                        const char* codec = "", LossyWay* way = nullptr);
    static bool sees(const PictureSide& side, int number = 165, int ms = 20000)
    {
        return waitFor([&] { return side.seen.nNumber == number; }, ms);
    }

    QTemporaryDir m_folder;
    PictureSide m_one;
    PictureSide m_other;
};
