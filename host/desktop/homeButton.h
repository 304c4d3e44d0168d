#pragma once
// What can be touched on the home screen: a tile that opens something, or a quick key that dials. A quick key
// can be held as well, by a finger or by OK.
#include <QAbstractButton>
#include <QPixmap>
#include <QTimer>

class homeButton : public QAbstractButton
{
    Q_OBJECT
public:
    enum Kind { Tile, QuickKey };
    homeButton(Kind kind, QWidget* parent);
    // captionKey: English key, shown translated; for a quick key a name, shown as it stands.
    void setContent(const QString& picture, const QString& caption);
    // A number in a red mark on its picture; 0 for none.
    void setBadge(int number);
    int badge() const { return m_nBadge; }
    // Of a quick key; null until it was read.
    const QPixmap& portrait() const { return m_portrait; }

signals:
    // Of a quick key: it is not clicked any more.
    void held();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void paintBadge(QPainter& painter, const QRect& tile) const;
    void paintTile(QPainter& painter);
    void paintQuickKey(QPainter& painter);
    void readPortrait();
    void hold();
    Kind m_kind;
    QString m_strPicture;
    QPixmap m_portrait;  // of a quick key
    int m_nPortrait = 0; // its request
    int m_nBadge = 0;
    QTimer m_hold; // runs while a finger or OK holds it
};
