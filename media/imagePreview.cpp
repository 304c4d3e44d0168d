#include "media/imagePreview.h"
#include "media/PhotoFile.h"
#include "media/mediaShows.h"
#include "support/host/language.h"
#include "support/host/ui.h"
#include <QLabel>
#include <QLocale>

namespace {

constexpr int kTextSize = 18;           // pixels
constexpr long long kLeastBytes = 1000; // of those that are told
constexpr int kTextWeight = 75;
const QSize kScreen(800, 480);
// A small label has no room for the words of a refusal.
const QRect kSmall(QPoint(585, 150), QPoint(710, 275));
const QRect kSmallWithWords(QPoint(555, 150), QPoint(754, 275));

// Null for a picture that is shown.
const char* refusalOf(PICTURE_RESULT result)
{
    switch (result) {
    case PICTURE_READ:
        return nullptr;
    case PICTURE_TOO_LARGE:
    case PICTURE_TOO_SLOW:
        return PHOTO_OVERSIZED;
    default:
        return PHOTO_ERROR;
    }
}

} // namespace

imagePreview::imagePreview(QObject* parent, QLabel* label, int delay, PREVIEW_MEDIA_TYPE type)
    : basePreview(parent, delay, type), m_pLabel(label)
{
    m_pLabel->setScaledContents(true);
    setFontStyle(kTextSize, kTextWeight, m_pLabel, true);
}

// One on demand is a preview that can be stopped, also before the label's turn.
void imagePreview::on_start_preview(bool bStill)
{
    SetActive();
    Request(bStill ? m_pLabel->size() : kScreen, bStill);
}

// The one over the whole screen is read before it opens: what is refused never covers the page. The one for
// the label may come up meanwhile, and takes nothing from it.
void imagePreview::Request(const QSize& size, bool bStill)
{
    int& request = bStill ? m_nStillRequest : m_nDemandRequest;
    pictureCancel(request);
    request = 0;
    const tagPictureWish wish = WishFor(size);
    PICTURE_RESULT result = PICTURE_MISSING;
    QPixmap picture;
    if (pictureAtOnce(wish, result, picture)) {
        OnRead(result, picture, bStill);
        return;
    }
    request = pictureRequest(wish, this, [this, bStill](PICTURE_RESULT told, const QPixmap& read) {
        (bStill ? m_nStillRequest : m_nDemandRequest) = 0;
        OnRead(told, read, bStill);
    });
}

tagPictureWish imagePreview::WishFor(const QSize& size) const
{
    tagPictureWish wish;
    wish.strPath = GetFile();
    wish.nWidth = size.width();
    wish.nHeight = size.height();
    wish.eFit = PICTURE_FIT_SIDES;
    wish.check = photoCheck;
    return wish;
}

void imagePreview::OnRead(PICTURE_RESULT result, const QPixmap& picture, bool bStill)
{
    if (const char* refusal = refusalOf(result)) {
        ShowRefusal(refusal);
        return;
    }
    if (m_pLabel->geometry() == kSmallWithWords)
        m_pLabel->setGeometry(kSmall);
    if (bStill)
        ShowPicture(picture);
    else
        PreviewImageFile(GetFile(), picture);
}

void imagePreview::ShowPicture(const QPixmap& picture)
{
    m_pLabel->setPixmap(picture);
    m_pLabel->show();
    ShowFacts();
}

void imagePreview::ShowFacts()
{
    tagPictureFacts facts;
    if (!m_pFacts || !pictureFacts(WishFor(m_pLabel->size()), facts))
        return;
    const QString bytes =
        QLocale(QLocale::English)
            .formattedDataSize(qMax(facts.nBytes, kLeastBytes), 0, QLocale::DataSizeSIFormat);
    m_pFacts->setText(QString::fromUtf8("%1 x %2 \u00b7 %3").arg(facts.nWidth).arg(facts.nHeight).arg(bytes));
    m_pFacts->show();
}

void imagePreview::ShowRefusal(const char* text)
{
    if (m_pLabel->width() == kSmall.width())
        m_pLabel->setGeometry(kSmallWithWords);
    m_pLabel->setText(Translate(text));
    m_pLabel->show();
}

void imagePreview::on_stop_preview()
{
    pictureCancel(m_nStillRequest);
    pictureCancel(m_nDemandRequest);
    m_nStillRequest = m_nDemandRequest = 0;
    m_pLabel->hide();
    if (m_pFacts)
        m_pFacts->hide();
}
