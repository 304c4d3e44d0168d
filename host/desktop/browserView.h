#pragma once
// Shows a page's text. It never fetches anything by itself: no pictures, no styles, no files.
#include <QTextBrowser>

class browserView : public QTextBrowser
{
    Q_OBJECT
public:
    explicit browserView(QWidget* parent = nullptr);
    void setPageText(const QString& text);
    // The link after the chosen one, or before it; OK follows it.
    void stepLink(bool next);
    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;
};
