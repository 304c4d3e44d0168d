#pragma once
// One call for samples: makes them of the device's records, one record at a time, so that whoever calls waits
// in its own way. Same thread as the reader's.
#include "calibration/touchTypes.h"
#include "support/file/rawDevice.h"

enum RAW_RESULT {
    RAW_SAMPLE, // the sample is filled
    RAW_MORE,   // another record is needed
    RAW_ENDED   // an error: no more samples in this call
};

enum : int {
    RAW_WAIT_US = 100000,   // after which a sample without a touch is due
    RAW_RECORD_LIMIT = 512, // records without a sample, after which a device is talking nonsense
};

class RawCall
{
public:
    explicit RawCall(const tsdev* device);
    // False where the environment asks for another kind of event.
    static bool IsEnabled();
    // Reads one record, which has to be there already.
    RAW_RESULT Take(ts_sample& sample);
    // What comes when nothing does.
    static void TimeOut(ts_sample& sample);
    // After RAW_ENDED: the device itself is gone.
    bool IsLost() const { return m_bLost; }
    int Descriptor() const { return m_nDescriptor; }

private:
    void takeAxis(const tagRawEvent& event);
    bool isBegun() const;
    bool isWhole() const;
    RAW_RESULT more();
    RAW_RESULT deliver(ts_sample& sample);

    struct tagPending
    {
        bool bThere = false;
        int nValue = 0;
    };
    int m_nDescriptor;
    RAW_RECORD m_eRecord;
    tagPending m_pendingX; // begins the next sample
    tagPending m_pendingY;
    bool m_bPressure = false; // once raised, each record makes a sample
    bool m_bTimed = false;
    struct timeval m_time = {};
    int m_nRecords = 0; // since the last sample
    bool m_bLost = false;
};
