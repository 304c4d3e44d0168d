#pragma once
// A label that wraps its text anywhere it must, and shrinks it rather than cutting it.
#include <QLabel>

class fittedLabel : public QLabel
{
    Q_OBJECT
public:
    fittedLabel(const QString& text, const QFont& font, int maxLines, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    int m_nMaxLines;
};
