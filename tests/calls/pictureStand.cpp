#include "tests/calls/pictureStand.h"
#include "tests/players/films.h"

void PictureStand::setSource(int number)
{
    const QString file = m_folder.filePath(QString("%1.png").arg(number));
    EXPECT_TRUE(numberedPicture(QSize(640, 480), number).save(file));
    qputenv("HX_PICTURE_SOURCE",
            ("filesrc location=" + file + " ! pngdec ! imagefreeze is-live=true").toUtf8());
}

tagMediaWant PictureStand::video(bool camera)
{
    tagMediaWant want;
    want.bVideo = true;
    want.bCamera = camera;
    want.nRate = 15;
    return want;
}

void PictureStand::connect(PictureSide& from, PictureSide& to, tagMediaWant want, tagMediaWant answered,
                           const char* codec, LossyWay* way)
{
    QByteArray offer = from.negotiation->offer(want);
    if (qstrcmp(codec, "VP8") == 0)
        offer.replace("H264", "H26x");
    ASSERT_TRUE(from.negotiation->agree(to.negotiation->answer(offer, answered)));
    to.apply(way ? way->port() : 0);
    from.apply(way ? way->port() : 0);
}
