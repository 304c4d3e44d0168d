#pragma once
// A key of the touch pad: its sign, and the letters below it. It takes no focus, which stays where its sign
// goes. User-interface thread.
#include <QAbstractButton>

class dialKey : public QAbstractButton
{
    Q_OBJECT
public:
    dialKey(QChar sign, const QString& letters, QWidget* parent);
    QChar sign() const { return m_sign; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QChar m_sign;
    QString m_strLetters;
};
