#pragma once
// A picture cut to a circle, which it fills.
#include <QPixmap>
#include <QWidget>

class roundPicture : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;
    void setPicture(const QPixmap& picture);
    const QPixmap& picture() const { return m_picture; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QPixmap m_picture;
};
