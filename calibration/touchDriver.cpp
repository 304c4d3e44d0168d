#include "calibration/touchDriver.h"
#include "support/file/atomicSave.h"
#include "support/file/fileTools.h"
#include "support/file/rawDevice.h"
#include "support/host/trace.h"
#include "support/text/chString.h"

namespace {

const char* const kMapping = "/rundata/data/pointercal";
const char* const kMappingLink = "/etc/pointercal"; // where drivers look
const char* const kJitterX = "/proc/tsc/x_jitter";
const char* const kJitterY = "/proc/tsc/y_jitter";

void setJitter(const char* file, int counts)
{
    chString text;
    text.Format("%d\n", counts);
    if (!rawDeviceSet(file, text))
        nuxTrace(TRACE_DETAIL, "%s cannot be set to %d", file, counts);
}

} // namespace

void touchSetJitter(int x, int y)
{
    setJitter(kJitterX, x);
    setJitter(kJitterY, y);
}

int touchSaveMapping(const calibration& cal)
{
    const int* a = cal.a;
    nuxTrace(TRACE_DETAIL,
             "m_ObjCalibration.a[0] = %d,m_ObjCalibration.a[1] = %d, m_ObjCalibration.a[2] = %d, "
             "m_ObjCalibration.a[3] =%d, m_ObjCalibration.a[4] = %d, m_ObjCalibration.a[5] = %d",
             a[0], a[1], a[2], a[3], a[4], a[5]);
    chString line;
    line.Format("%d %d %d %d %d %d %d\n", a[1], a[2], a[0], a[4], a[5], a[3], a[6]);
    // With the zero at its end, as drivers know it.
    if (!fileSaveAtomic(kMapping, line.GetText(), size_t(line.GetLength()) + 1))
        return 0;
    if (!fileMakeLink(kMapping, kMappingLink))
        nuxTrace(TRACE_NOTE, "%s cannot be linked to %s", kMappingLink, kMapping);
    return 1;
}
