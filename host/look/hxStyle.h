#pragma once
// Draws the toolkit's common widgets as the phone shows them.
#include <QProxyStyle>

class QStyleOptionButton;
class QStyleOptionSlider;
class QStyleOptionSpinBox;
class QStyleOptionViewItem;

class hxStyle : public QProxyStyle
{
    Q_OBJECT
public:
    hxStyle();
    void polish(QWidget* widget) override;
    void polish(QPalette& palette) override;
    using QProxyStyle::polish;
    bool eventFilter(QObject* watched, QEvent* event) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
};
