#pragma once
// The place of a region on the screen, with the widget of the media on turn and its dial button.
// User-interface thread.
#include "signage/nDeckScreen.h"
#include "support/host/geometry.h"
#include <QRect>
#include <QWidget>

class QPushButton;
class QWebView;
class mediaImage;
class mediaText;
class mediaVideo;
class videoAssistant;

class nDeckPanel : public QWidget, public nDeckPlace
{
    Q_OBJECT
public:
    explicit nDeckPanel(QWidget* parent = nullptr);
    ~nDeckPanel() override;

    // In layout coordinates; right is left + width, bottom top + height.
    void SetOriginalRect(const chRect& rect) { m_original = rect; }
    const chRect& GetOriginalRect() const { return m_original; }
    void SetPanelRect(const QRect& rect) { m_panelRect = rect; } // scaled
    const QRect& GetPanelRect() const { return m_panelRect; }

    void UpdatePanelMedia(mediaBase* media) override;
    bool UpdatePicture(mediaImage& media);
    bool UpdateRichText(mediaText& media);
    bool UpdateVideo(mediaVideo& media);
    bool IsShowing(const mediaBase& media) const override;

    QWidget* GetContent() const { return m_pContent; }
    QPushButton* GetDialButton() const { return m_pBtnDial; }
    void SetRegion(nDeckRegion* region) override { m_pRegion = region; }
    nDeckRegion* GetRegion() const override { return m_pRegion; }
    // What it held was taken away.
    void ForgetWidgets();

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void btnDialNumber_click();
    void btnDialUrl_click();

protected:
    bool event(QEvent* event) override;

private:
    bool TakesTime(const mediaBase& media) const;
    void ReleaseContent();
    void RemoveDialButton();
    void MakeDialButton(const mediaBase& media);
    QRect DialButtonRect(int width, int height) const;
    QRect ContentRect() const;
    void CutHoleForButton();
    void PlaceVideo(videoAssistant& video);
    static void ShowPause(videoAssistant& video);
    void OnResize();
    void ResizeChild(QWidget* child, int width, int height);

    chRect m_original;
    QRect m_panelRect;
    QWidget* m_pContent = nullptr;
    QPushButton* m_pBtnDial = nullptr;
    QPushButton* m_pBtnUrl = nullptr;
    nDeckRegion* m_pRegion = nullptr;
    bool m_bFiltering = false; // sees the events of the application
};
