#include "tests/players/pictureSide.h"
#include "tests/players/films.h"

void SeenPictures::showOther(const GstVideoFrame& frame)
{
    const QImage grey(static_cast<const uchar*>(frame.data[0]), frame.info.width, frame.info.height,
                      frame.info.stride[0], QImage::Format_Grayscale8);
    nNumber = numberIn(grey);
    nWidth = grey.width();
    bBordered = qGray(grey.pixel(grey.width() / 64, 2)) < 64;
    ++nOther;
}

// Until it is told to come back.
void SeenPictures::showOwn(const GstVideoFrame&)
{
    ++nOwn;
    while (bStuck)
        g_usleep(1000);
}

PictureSide::PictureSide(pictureCamera& camera)
{
    std::unique_ptr<callSockets> sockets = callSockets::open();
    tagOwnMedia own;
    own.address = "127.0.0.1";
    own.nPort = 40000;
    own.nPicturePort = sockets->port();
    own.bLoopback = true;
    negotiation = std::make_unique<callNegotiation>(own);
    session = std::make_unique<pictureSession>(std::move(sockets), seen, camera);
    session->setCamera(true);
}

void PictureSide::apply(int through)
{
    tagAgreedPicture agreed = negotiation->agreedPicture();
    if (through != 0)
        agreed.nPort = agreed.nRtcpPort = through;
    session->agree(agreed);
}
