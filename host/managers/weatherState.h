#pragma once
// What the home screen shows of the weather. User-interface thread.
#include <QObject>
#include <QString>

class WeatherState : public QObject
{
    Q_OBJECT
public:
    // As configured when the phone started, or at the last request since.
    bool IsShown() const { return m_bShown; }
    QString City() const { return m_strCity; }
    // Reads the configuration again.
    void Request();

signals:
    // The weather of City() is wanted, if IsShown().
    void requested();

private:
    friend WeatherState* weatherState();
    WeatherState();
    void Read();
    bool m_bShown = false;
    QString m_strCity;
};

// The one state, made at the first call.
WeatherState* weatherState();
