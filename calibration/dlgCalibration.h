#pragma once
// The page "LCD Adjusting": a cross at five places, a raw touch at each, and the mapping that takes one to
// the other. The whole screen, without bars. User-interface thread.
#include "calibration/calibrationFit.h"
#include "calibration/touchReader.h"
#include "calibration/touchSampler.h"
#include "support/host/leftbar.h"
#include "support/host/message.h"
#include <QDialog>
#include <QTimer>

class Cross;
class QLabel;

enum : int { CALIBRATION_SAMPLES = 24 };

// Where the cross stands, in this order, and the samples of the point in progress.
HX_MODULE_API extern int xess[CALIBRATION_POINTS];
HX_MODULE_API extern int yess[CALIBRATION_POINTS];
HX_MODULE_API extern ts_sample samp[CALIBRATION_SAMPLES];

class dlgCalibration : public QDialog, public chMsgProcesser, public LeftBarOperation
{
    Q_OBJECT
public:
    dlgCalibration(QWidget* parent, tagLeftBarInfo* info);
    ~dlgCalibration() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void Dosystem();   // the driver's filter off
    void exitAdjust(); // closes the page with nothing stored
    void changeText(); // the instruction again, after a failure

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    // The device, opened when current is none; null when it cannot be.
    tsdev* OpenDevice(tsdev* current);
    void GetTouchPoint();
    void OnSampleTimer(msgObject& msg);
    void OnPointUp(msgObject& msg);
    void GetTheTouchPointInfo(calibration& cal, int point);
    void DrawPoint(int point); // the cross goes to the one after it
    bool GetTransferparameter(calibration& cal) { return perform_calibration(&cal); }
    bool Checkparameter(calibration& cal) { return calibrationHolds(cal); }
    void GetTheResult();

    void restartWatchdog();
    void killTimers();
    void askSample();
    void onSample(const ts_sample& sample);
    void askReleaseSample();
    void onReleaseSample(const ts_sample& sample);
    void forgetLostDevice();
    void endPoint();
    void tellFailure();
    void tellNoDevice();
    void askConsent();
    void takeNewProfile();
    bool isUnderCall() const;
    void showText(const char* text, Qt::GlobalColor colour);

    int m_nPressCount = 0;     // the point in progress
    int m_nAttempts = 0;       // rounds since the page came up
    int m_nSamples = 0;        // of the point in progress
    int m_nReleaseSamples = 0; // of this tick
    int m_nWidth = 0;
    int m_nHeight = 0;
    tsdev* m_pDevice = nullptr;
    calibration m_ObjCalibration;
    Cross* m_pCross;
    QLabel* m_pText;
    const char* m_szText = nullptr; // English key of what the label shows
    QTimer m_failure;
    QTimer m_watchdog;
    chThreadTimer m_sampling;
    chThreadTimer m_release;
    TouchSampler m_sampler;
};
