#include "host/look/look.h"
#include "host/widgets/replacePlaceholder.h"
#include "support/host/bars.h"
#include "support/host/image.h"
#include "support/host/picture.h"
#include "support/host/text.h"
#include <QPainter>

namespace {

constexpr int kIconTop = 36;
constexpr int kIconGap = 13; // between the icon and the title
constexpr int kMargin = 6;
constexpr int kTitleLines = 3;
constexpr int kTileShadow = 6;
constexpr int kTileShadowDown = 2;
constexpr qreal kTileShadowOpacity = 0.16;
const char* const kTheme = HX_THEME("");
const char kRequestProperty[] = "hxPictureRequest";
const char kPictureProperty[] = "hxPicture"; // of another's, as it has come

struct Places
{
    QRect icon;
    QRect title;
    int titleAlign;
};

Places below(const QRect& bar, const QSize& icon)
{
    const int height = qMax(icon.height(), 0);
    const QRect iconRect(bar.left() + (bar.width() - icon.width()) / 2, bar.top() + kIconTop, icon.width(),
                         height);
    const int titleTop = bar.top() + kIconTop + (height > 0 ? height + kIconGap : 0);
    return {iconRect,
            QRect(bar.left() + kMargin, titleTop, bar.width() - 2 * kMargin, bar.bottom() - titleTop),
            Qt::AlignHCenter | Qt::AlignTop};
}

Places beside(const QRect& bar, const QSize& icon)
{
    const QRect iconRect(bar.left() + kMargin, bar.top() + (bar.height() - icon.height()) / 2, icon.width(),
                         icon.height());
    const int titleLeft = icon.isEmpty() ? bar.left() + kMargin : iconRect.right() + 1 + kIconGap;
    return {iconRect, QRect(titleLeft, bar.top(), bar.right() - kMargin - titleLeft, bar.height()),
            Qt::AlignLeft | Qt::AlignVCenter};
}

// One of the phone's own, which takes less than a frame.
QPixmap ownPicture(const QString& path)
{
    const QByteArray name = path.toUtf8();
    const QPixmap picture = GetImageManager()->GetImage(name);
    const bool fits =
        picture.width() <= look::kLeftBarWidth - 2 * kMargin && picture.height() <= look::kTileSize;
    return fits ? picture : GetImageManager()->GetImageByScale(name, look::kTileSize, look::kTileSize);
}

// Of anybody else, and of any size.
tagPictureWish wishOf(const QString& path)
{
    tagPictureWish wish;
    wish.strPath = fromQString(path);
    wish.nWidth = wish.nHeight = look::kTileSize;
    wish.eFit = PICTURE_FIT_COVER;
    return wish;
}

bool isOwn(const QString& path)
{
    return path.isEmpty() || path.startsWith(kTheme);
}

// Nothing is asked for before it is painted: most pages are built long before that.
QPixmap pictureOf(qLeftBar* bar)
{
    const QString path = bar->icon();
    if (isOwn(path))
        return ownPicture(path);
    if (!bar->property(kRequestProperty).isValid()) {
        const auto take = [bar](PICTURE_RESULT, const QPixmap& picture) {
            bar->setProperty(kPictureProperty, picture);
            bar->update();
        };
        bar->setProperty(kRequestProperty, pictureTell(wishOf(path), bar, take));
    }
    return bar->property(kPictureProperty).value<QPixmap>();
}

} // namespace

qLeftBar::qLeftBar(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(look::kLeftBarWidth, look::kPageHeight);
}

void qLeftBar::setTitle(const QString& title)
{
    if (m_strTitle == title)
        return;
    m_strTitle = title;
    update();
}

void qLeftBar::setIcon(const QString& path)
{
    m_strIcon = path;
    pictureCancel(property(kRequestProperty).toInt());
    setProperty(kRequestProperty, QVariant());
    update();
}

void qLeftBar::setIconGeometry(const QRect& rect)
{
    m_iconRect = rect;
    update();
}

void qLeftBar::setTextGeometry(const QRect& rect)
{
    m_textRect = rect;
    update();
}

void qLeftBar::setFlow(int flow)
{
    m_nFlow = flow;
    update();
}

QString qLeftBar::title() const
{
    return m_strTitle;
}

QString qLeftBar::icon() const
{
    return m_strIcon;
}

void qLeftBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    look::paintLeftBar(painter, rect());
    const QPixmap picture = pictureOf(this);
    Places places = m_nFlow == LeftToRight ? beside(rect(), picture.size()) : below(rect(), picture.size());
    // A rectangle of the bar's own size is the whole bar, in whatever coordinates it was given.
    if (m_iconRect.isValid() && m_iconRect.size() != size()) {
        places.icon.moveCenter(m_iconRect.center());
    }
    if (m_textRect.isValid() && m_textRect.size() != size()) {
        places.title = m_textRect;
        places.titleAlign = Qt::AlignCenter;
    }
    if (!picture.isNull()) {
        look::paintShadow(painter, places.icon.translated(0, kTileShadowDown), kTileShadow,
                          kTileShadowOpacity);
        painter.drawPixmap(places.icon.topLeft(), picture);
    }
    painter.setPen(look::colour(look::kTextOnBar));
    look::paintFitted(painter, places.title, places.titleAlign, m_strTitle, look::font(look::kTextSize, true),
                      kTitleLines);
}

qLeftBar* qReplaceLeftBar(QWidget* placeholder, const char* title, const char* icon)
{
    qLeftBar* bar = replacePlaceholder<qLeftBar>(placeholder);
    if (bar && title)
        bar->setTitle(QString::fromUtf8(title));
    if (bar && icon)
        bar->setIcon(QString::fromUtf8(icon));
    return bar;
}
