#pragma once
// The one frame of the show. It lives in the full-screen window or, smaller, in a window of the host.
// User-interface thread.
#include "signage/nDeckCover.h"
#include "signage/nDeckPicture.h"
#include "signage/nDeckScreen.h"
#include "support/container/chList.h"
#include "support/file/fileTools.h"
#include <QElapsedTimer>
#include <QFrame>
#include <QPointer>
#include <QRect>

class QWebView;
class nDeckPanel;

class nDeckFrame : public QFrame
{
    Q_OBJECT
public:
    explicit nDeckFrame(QWidget* parent = nullptr);
    ~nDeckFrame() override;

    // A panel at the rectangle, which is in layout coordinates (right: left + width). Owned by the pool.
    nDeckPanel* CreatePanel(const chRect& rect);
    void ClearPannels();
    void removeWidget(QWidget* widget);

    // name: a picture in the signage folder, or a device path when it has a "/"; empty: the general
    // background. The second argument is not looked at.
    void SetBackgroundImage(chString name, bool);
    void SetBackgroundColor(chString color); // as QColor::setNamedColor has it
    chString GetBackgroundImage() const { return m_strBackground; }

    // Null: out of every window. A parent keeps the rectangle it came with first.
    void SetFrameParent(QWidget* parent, QRect rect);
    void ShownDeckFrame(int show);
    // Draws what is on turn: while it was hidden the layouts went on without being drawn.
    void Refresh();
    bool IsRefreshFrame() const { return !isVisible(); }
    void SetFocusnDeckWidgetParent();
    void BeforeParentDestory(QWidget* parent);
    void OnFoucsIn();
    void OnFoucsOut();
    // The topmost window of the phone; null when there is none.
    QWidget* GetFocusWidget();
    // The rectangle taken in a known parent; a null one for any other.
    QRect GetnDeckWidgetFromParent(QWidget* parent);
    bool FindnDeckWidgetFromParent(QWidget* parent);

    void SetNDeckType(E_NDECKWINDOW_TYPE type) { m_eType = type; }
    E_NDECKWINDOW_TYPE GetNDeckType() const { return m_eType; }
    void SetRectRate(float rate) { m_fRcRate = rate; }
    float GetRectRate() const { return m_fRcRate; }

    // Between these two what rect shows (null: all of it) is exchanged: it stays on the screen until the
    // texts and pictures awaited meanwhile are there. They nest; the outermost pair counts.
    void KeepPicture(const QRect& rect = QRect());
    void ReleasePicture();
    void AwaitText(QWebView* view);
    void AwaitPicture(nDeckPicture* picture);
    // What a picture of the show is read as. rect: of its region, in layout coordinates; null: the
    // background.
    tagPictureWish PictureWish(const chString& name, const chRect* rect) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    bool event(QEvent* event) override;

private:
    struct tagParent
    {
        QWidget* pWidget = nullptr;
        QRect rect;
    };
    // What the brush was made of, so that the same picture is not made twice.
    struct tagBackground
    {
        chString strPath; // device path, or the name of a colour
        bool bColor = false;
        tagFileStat stat;
        QSize size;
    };
    tagParent* FindParent(QWidget* parent);
    void DropParent(QWidget* parent);
    void MoveTo(const tagParent& parent);
    void Detach();
    bool IsBackground(const tagBackground& wanted) const;
    void SetBackgroundBrush(const QBrush& brush);
    void SetBackgroundAgain();
    void ReadBackground(const chString& path);
    void TakeBackground(PICTURE_RESULT result, const QPixmap& picture);
    void SettleBackground();
    void OnOwnEvent(QEvent* event);
    void EndCovers(const QRect& rect);
    void InstallFilter();
    void RemoveFilter();
    void GiveBack(QWidget* widget);

    chObjList_dynamic<tagParent, 16> m_parents;
    chString m_strBackground;
    E_NDECKWINDOW_TYPE m_eType = NDECK_WINDOW_NONE;
    float m_fRcRate = 1.0f;
    bool m_bFiltering = false; // sees the events of the application
    tagBackground m_background;
    int m_nBackgroundRequest = 0;
    QElapsedTimer m_looked; // at its file
    int m_nKeeps = 0;
    QPointer<nDeckCover> m_pCover; // of the exchange under way
};

nDeckFrame& GetnDeckFrame();

// The smaller one of the two rates from the full size to the rectangle.
float CaculateRectRate(const QRect& rect, QRect full);
// Puts the panels in w to their places at that rate.
void setResizeWidget(QWidget* w, float rate);
