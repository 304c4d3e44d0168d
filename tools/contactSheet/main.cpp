// hxContactSheet: many pictures, small and in rows, in one JPEG.
#include <QImage>
#include <QPainter>
#include <QStringList>
#include <cstdio>

namespace {

constexpr int kColumns = 6;
constexpr QSize kCell(266, 160);
constexpr int kGap = 3; // on each side of a picture
constexpr QRgb kGround = 0xffdfe6ee;
constexpr int kQuality = 88;

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        fprintf(stderr, "usage: hxContactSheet SHEET.jpg PICTURE...\n");
        return 2;
    }
    const int count = argc - 2;
    const QSize step = kCell + QSize(2 * kGap, 2 * kGap);
    QImage sheet(step.width() * kColumns, step.height() * ((count + kColumns - 1) / kColumns),
                 QImage::Format_RGB32);
    sheet.fill(kGround);
    QPainter painter(&sheet);
    for (int i = 0; i < count; ++i) {
        const QImage picture(QString::fromLocal8Bit(argv[i + 2]));
        if (picture.isNull()) {
            fprintf(stderr, "hxContactSheet: cannot read %s\n", argv[i + 2]);
            return 1;
        }
        const QImage small = picture.scaled(kCell, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QPoint corner(i % kColumns * step.width() + (step.width() - small.width()) / 2,
                            i / kColumns * step.height() + (step.height() - small.height()) / 2);
        painter.drawImage(corner, small);
    }
    painter.end();
    if (!sheet.save(QString::fromLocal8Bit(argv[1]), "JPG", kQuality)) {
        fprintf(stderr, "hxContactSheet: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
