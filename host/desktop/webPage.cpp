#include "host/desktop/webPage.h"
#include <QStringDecoder>
#include <QUrl>

bool webPage::isAllowed(const QUrl& address)
{
    const QString scheme = address.scheme().toLower();
    return address.isValid() && !address.host().isEmpty() && (scheme == "http" || scheme == "https");
}

bool webPage::isText(const QByteArray& content)
{
    const bool isWide = content.startsWith("\xff\xfe") || content.startsWith("\xfe\xff");
    return isWide || !content.contains('\0');
}

QString webPage::textOf(const QByteArray& content)
{
    QStringDecoder decoder = QStringDecoder::decoderForHtml(content);
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringDecoder::Utf8);
    return decoder(content);
}
