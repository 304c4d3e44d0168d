#pragma once
// Sides of a call of which only the pictures run: over real ports, with a numbered picture as the camera's,
// and what is seen at the other end.
#include "players/pictureSession.h"
#include "tests/calls/callStand.h"
#include "tests/calls/lossyWay.h"
#include <QTemporaryDir>

struct SeenPictures : public pictureEnd
{
    void showOther(const GstVideoFrame& frame) override;
    void showOwn(const GstVideoFrame&) override { ++nOwn; }
    void endOther() override { nNumber = -1; }
    void endOwn() override { nOwn = 0; }

    std::atomic<int> nNumber{-1};
    std::atomic<int> nWidth{0};
    std::atomic<int> nOther{0};
    std::atomic<int> nOwn{0};
};

struct PictureSide
{
    PictureSide();
    // through: where what is sent goes instead.
    void apply(int through = 0);

    SeenPictures seen;
    std::unique_ptr<callNegotiation> negotiation;
    std::unique_ptr<pictureSession> session;
};

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
