#pragma once
// Shows the selected picture in a label of the page, or why it cannot be shown. User-interface thread.
#include "media/basePreview.h"
#include "support/host/picture.h"

class QLabel;

class imagePreview : public basePreview
{
    Q_OBJECT
public:
    // The label is not owned, and outlives this object.
    imagePreview(QObject* parent, QLabel* label, int delay, PREVIEW_MEDIA_TYPE type);
    // Tells pixels and bytes of what the other label shows; not owned either.
    void SetFactsLabel(QLabel* label) { m_pFacts = label; }

    // The picture, or the words of a refusal, come a moment later, unless another is previewed by then.
    void on_start_preview(bool bStill) override;
    void on_stop_preview() override;

private:
    void Request(const QSize& size, bool bStill);
    void OnRead(PICTURE_RESULT result, const QPixmap& picture, bool bStill);
    void ShowPicture(const QPixmap& picture);
    void ShowRefusal(const char* text);

    tagPictureWish WishFor(const QSize& size) const;
    void ShowFacts();

    QLabel* m_pLabel;
    QLabel* m_pFacts = nullptr;
    int m_nStillRequest = 0;  // for the label
    int m_nDemandRequest = 0; // for the whole screen
};
