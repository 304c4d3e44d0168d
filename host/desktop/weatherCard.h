#pragma once
// The card of the home screen that shows the weather: picture, temperature, and a line below. User-interface
// thread.
#include <QAbstractButton>
#include <QPixmap>

struct tagWeatherCard
{
    QString strTemperature; // now
    QString strCity;
    QString strRange;
    QString strCondition;
    bool operator==(const tagWeatherCard& other) const
    {
        return strTemperature == other.strTemperature && strCity == other.strCity &&
               strRange == other.strRange && strCondition == other.strCondition;
    }
};

class weatherCard : public QAbstractButton
{
    Q_OBJECT
public:
    enum : int { PICTURE_SIZE = 64 }; // pixels

    explicit weatherCard(QWidget* home);
    void setContent(const tagWeatherCard& content);
    // Null for none.
    void setPicture(const QPixmap& picture);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    QString m_strTemperature;
    QString m_strLine;
    QPixmap m_picture;
};
