#pragma once
// Rich text without the engine: what can be read of it, standing still. User-interface thread.
#include <QTextDocument>
#include <QWidget>

class textPanel : public QWidget
{
    Q_OBJECT
public:
    explicit textPanel(QWidget* parent);
    void setHtml(const QString& html);
    void setZoom(double factor);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    // Never opens a file for a picture.
    class Document : public QTextDocument
    {
    protected:
        QVariant loadResource(int type, const QUrl& name) override;
    };
    Document m_document;
    double m_fZoom = 1;
};
