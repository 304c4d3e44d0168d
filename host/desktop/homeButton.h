#pragma once
// What can be touched on the home screen: a tile that opens something, or a quick key that dials.
#include <QAbstractButton>

class homeButton : public QAbstractButton
{
    Q_OBJECT
public:
    enum Kind { Tile, QuickKey };
    homeButton(Kind kind, QWidget* parent);
    // captionKey: English key, shown translated; for a quick key a name, shown as it stands.
    void setContent(const QString& picture, const QString& caption);

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintTile(QPainter& painter);
    void paintQuickKey(QPainter& painter);
    Kind m_kind;
    QString m_strPicture;
};
