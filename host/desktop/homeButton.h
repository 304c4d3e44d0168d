#pragma once
// What can be touched on the home screen: a tile that opens something, or a quick key that dials.
#include <QAbstractButton>
#include <QPixmap>

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

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintBadge(QPainter& painter, const QRect& tile) const;
    void paintTile(QPainter& painter);
    void paintQuickKey(QPainter& painter);
    void readPortrait();
    Kind m_kind;
    QString m_strPicture;
    QPixmap m_portrait;  // of a quick key
    int m_nPortrait = 0; // its request
    int m_nBadge = 0;
};
