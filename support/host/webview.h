#pragma once
// Rich text. The engine is loaded with the first view; a phone that shows none never pays for it.
// User-interface thread.
#include "support/host/api.h"
#include <QUrl>
#include <QWidget>

class HX_HOST_API QWebView : public QWidget
{
    Q_OBJECT
public:
    enum LINK_DELEGATION { DontDelegateLinks = 0, DelegateAllLinks = 2 };

    explicit QWebView(QWidget* parent = nullptr);
    ~QWebView() override;
    // The page is transparent where the text paints nothing. It cannot read the phone's files.
    void setHtml(const QString& html, const QUrl& base = QUrl());
    QString html() const;
    // False while the text is not in the engine, because nobody has seen the view for a second. The next show
    // loads it again from its beginning, and so does setHtml, which a hidden view takes for a second.
    bool isLoaded() const;
    // How large the page is drawn, for a frame that is shown smaller: 0.25 to 5; 1 at start. Keeps for later
    // texts.
    void setZoomFactor(double factor);
    double zoomFactor() const;
    void setLinkDelegationPolicy(LINK_DELEGATION policy);

signals:
    // The text is on the screen, or cannot be (ok false).
    void loadFinished(bool ok);

protected:
    void resizeEvent(QResizeEvent*) override;
    void showEvent(QShowEvent*) override;
    void hideEvent(QHideEvent*) override;

private:
    struct Private;
    Private* m_p;
};
