#include "host/desktop/browserView.h"
#include "host/look/look.h"
#include <QImage>

namespace {

constexpr int kMargin = 14;

// Stands for a picture, so that the text closes over its place.
QImage noPicture()
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

} // namespace

browserView::browserView(QWidget* parent) : QTextBrowser(parent)
{
    setOpenLinks(false);
    setUndoRedoEnabled(false);
}

void browserView::setPageText(const QString& text)
{
    document()->setDefaultFont(look::font(look::kTextSize));
    document()->setDocumentMargin(kMargin);
    if (Qt::mightBeRichText(text))
        setHtml(text);
    else
        setPlainText(text);
    moveCursor(QTextCursor::Start);
}

void browserView::stepLink(bool next)
{
    focusNextPrevChild(next);
}

QVariant browserView::loadResource(int type, const QUrl&)
{
    return type == QTextDocument::ImageResource ? QVariant(noPicture()) : QVariant();
}

// Pages come from the network only, never from an address that the toolkit would open itself.
void browserView::doSetSource(const QUrl&, QTextDocument::ResourceType) {}
