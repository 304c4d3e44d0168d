#include "calibration/calibrationFit.h"
#include "support/host/trace.h"
#include <algorithm>
#include <climits>
#include <cstdlib>

namespace {

const double kUnit = 65536.0; // what stands for 1 in the mapping
const double kFlat = 0.1;

float product(int a, int b)
{
    return float(static_cast<long long>(a) * b);
}

// Sums over the points, and the inverse of their normal matrix.
struct tagPlane
{
    float a = 0, b = 0, c = 0, e = 0, f = 0, i = 0;
};

bool makePlane(const calibration& cal, tagPlane& plane)
{
    float n = 0, sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
    for (int k = 0; k < CALIBRATION_POINTS; ++k) {
        n += 1.0f;
        sx += float(cal.x[k]);
        sy += float(cal.y[k]);
        sxx += product(cal.x[k], cal.x[k]);
        syy += product(cal.y[k], cal.y[k]);
        sxy += product(cal.x[k], cal.y[k]);
    }
    const float det = n * (sxx * syy - sxy * sxy) + sx * (sxy * sy - sx * syy) + sy * (sx * sxy - sy * sxx);
    if (double(det) > -kFlat && double(det) < kFlat) {
        nuxTrace(TRACE_NOTE, "ts_calibrate: determinant is too small -- %f", double(det));
        return false;
    }
    plane.a = (sxx * syy - sxy * sxy) / det;
    plane.b = (sxy * sy - sx * syy) / det;
    plane.c = (sx * sxy - sy * sxx) / det;
    plane.e = (n * syy - sy * sy) / det;
    plane.f = (sx * sy - n * sxy) / det;
    plane.i = (n * sxx - sx * sx) / det;
    return true;
}

// Cut to a whole number; what no number holds, which only a broken panel gives, becomes the nearest.
int scaled(float value)
{
    const double wide = value * kUnit;
    if (!(wide > INT_MIN))
        return INT_MIN;
    return wide < INT_MAX ? int(wide) : INT_MAX;
}

// One axis of the screen: the three parts that make it of the panel's two.
void fitAxis(const tagPlane& plane, const calibration& cal, const int* screen, int* parts)
{
    float z = 0, zx = 0, zy = 0;
    for (int k = 0; k < CALIBRATION_POINTS; ++k) {
        z += float(screen[k]);
        zx += product(screen[k], cal.x[k]);
        zy += product(screen[k], cal.y[k]);
    }
    const float offset = plane.a * z + plane.b * zx + plane.c * zy;
    const float ofX = plane.b * z + plane.e * zx + plane.f * zy;
    const float ofY = plane.c * z + plane.f * zx + plane.i * zy;
    nuxTrace(TRACE_DETAIL, "%f %f %f", double(offset), double(ofX), double(ofY));
    parts[0] = scaled(offset);
    parts[1] = scaled(ofX);
    parts[2] = scaled(ofY);
}

__extension__ using Wide = __int128; // two products of 64 bits and their sum fit

// In wide numbers, cut to what an int holds: a damaged mapping may not fit.
int mapped(const calibration& cal, int point, int first)
{
    const Wide sum =
        Wide(cal.a[first + 1]) * cal.x[point] + Wide(cal.a[first + 2]) * cal.y[point] + cal.a[first];
    return int(std::clamp(sum / cal.a[CALIBRATION_PARTS - 1], Wide(INT_MIN), Wide(INT_MAX)));
}

bool isNear(int value, int wanted)
{
    return std::llabs(static_cast<long long>(value) - wanted) <= CALIBRATION_TOLERANCE;
}

} // namespace

bool perform_calibration(calibration* cal)
{
    tagPlane plane;
    if (!makePlane(*cal, plane))
        return false;
    fitAxis(plane, *cal, cal->xfb, cal->a);
    fitAxis(plane, *cal, cal->yfb, cal->a + 3);
    cal->a[CALIBRATION_PARTS - 1] = int(kUnit);
    return true;
}

bool calibrationHolds(const calibration& cal)
{
    if (cal.a[CALIBRATION_PARTS - 1] == 0)
        return false;
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        const int x = mapped(cal, i, 0);
        const int y = mapped(cal, i, 3);
        if (!isNear(x, cal.xfb[i]) || !isNear(y, cal.yfb[i])) {
            nuxTrace(TRACE_NOTE, "check error((%d, %d) != (%d, %d)", x, y, cal.xfb[i], cal.yfb[i]);
            return false;
        }
    }
    return true;
}
