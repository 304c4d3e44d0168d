#pragma once
// A side of a call of which only the pictures run: over real ports, with the camera that HX_PICTURE_SOURCE
// describes, and what is seen of numbered pictures of the other side.
#include "players/pictureSession.h"

struct SeenPictures : public pictureEnd
{
    void showOther(const GstVideoFrame& frame) override;
    void showOwn(const GstVideoFrame&) override;
    void endOther() override { nNumber = -1; }
    void endOwn() override { nOwn = 0; }

    std::atomic<int> nNumber{-1};
    std::atomic<int> nWidth{0};
    std::atomic<bool> bBordered{false}; // above, where a number begins with white
    std::atomic<int> nOther{0};
    std::atomic<int> nOwn{0};
    std::atomic<bool> bStuck{false}; // whoever shows an own picture does not come back
};

struct PictureSide
{
    PictureSide() : PictureSide(m_camera) {}
    // As the other calls of a side that has one camera.
    explicit PictureSide(pictureCamera& camera);
    // through: where what is sent goes instead.
    void apply(int through = 0);

private:
    pictureCamera m_camera;

public:
    SeenPictures seen;
    std::unique_ptr<callNegotiation> negotiation;
    std::unique_ptr<pictureSession> session;
};
