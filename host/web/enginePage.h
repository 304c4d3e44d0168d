#pragma once
// A page that shows its text and does nothing else: no links, windows, boxes, downloads, questions.
// User-interface thread.
#include <QWebEnginePage>

class enginePage : public QWebEnginePage
{
    Q_OBJECT
public:
    enginePage(QWebEngineProfile* profile, QObject* parent);
    // What is told from now on is told of this text.
    void setText(const QString& html);

signals:
    void begun();   // the text's document has taken the place of the one before
    void laidOut(); // the text is read

protected:
    bool acceptNavigationRequest(const QUrl& address, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
    QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
    void javaScriptAlert(const QUrl&, const QString&) override {}
    bool javaScriptConfirm(const QUrl&, const QString&) override { return false; }
    bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override { return false; }
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& text, int,
                                  const QString&) override;

private:
    void restrict();
    void addMarks();

    qsizetype m_nAwaited = 0; // length of the address
};
