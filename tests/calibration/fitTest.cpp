// The mapping from panel to screen, against one in double precision.
#include "calibration/calibrationFit.h"
#include "tests/kit/phoneTest.h"
#include <climits>
#include <cmath>
#include <random>

namespace {

constexpr int kX[CALIBRATION_POINTS] = {50, 750, 750, 50, 400};
constexpr int kY[CALIBRATION_POINTS] = {50, 50, 430, 430, 240};
constexpr int kUnit = 65536;

class CalibrationFit : public PhoneTest
{
};

// The panel's position for a screen's: parts as those of a mapping, the other way round.
struct tagPanel
{
    double ox, xx, xy, oy, yx, yy;
};

calibration touched(const tagPanel& panel)
{
    calibration cal;
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        cal.xfb[i] = kX[i];
        cal.yfb[i] = kY[i];
        cal.x[i] = int(std::lround(panel.ox + panel.xx * kX[i] + panel.xy * kY[i]));
        cal.y[i] = int(std::lround(panel.oy + panel.yx * kX[i] + panel.yy * kY[i]));
    }
    return cal;
}

// The least squares in double precision, by elimination with pivots instead of an inverse.
void solve(const calibration& cal, const int* screen, double* parts)
{
    double m[3][4] = {};
    for (int k = 0; k < CALIBRATION_POINTS; ++k) {
        const double row[3] = {1.0, double(cal.x[k]), double(cal.y[k])};
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j)
                m[i][j] += row[i] * row[j];
            m[i][3] += row[i] * screen[k];
        }
    }
    for (int i = 0; i < 3; ++i) {
        int best = i;
        for (int r = i + 1; r < 3; ++r)
            best = std::fabs(m[r][i]) > std::fabs(m[best][i]) ? r : best;
        std::swap(m[i], m[best]);
        for (int r = 0; r < 3; ++r) {
            const double part = r == i ? 0 : m[r][i] / m[i][i];
            for (int j = i; j < 4; ++j)
                m[r][j] -= part * m[i][j];
        }
    }
    for (int i = 0; i < 3; ++i)
        parts[i] = m[i][3] / m[i][i];
}

double at(const int* parts, int x, int y)
{
    return (double(parts[1]) * x + double(parts[2]) * y + parts[0]) / kUnit;
}

} // namespace

// Single precision holds 24 bits. On panels of 256 to 8192 counts, turned by at most 30 degrees, with the
// screen on at least seven tenths of the panel, that is enough for slopes within one count of 1/65536, and
// for positions within one count of the screen, a pixel, wherever on it a finger comes down. The offset
// alone, millions of such counts, is not held to one of them: what it lacks is a small part of a pixel.
TEST_F(CalibrationFit, EqualsTheReferenceWithinOneCountOnTenThousandPanelsWithNoise)
{
    std::mt19937 chance(7);
    std::uniform_real_distribution<double> part(-1, 1);
    double worstSlope = 0;
    double worstPlace = 0;
    for (int round = 0; round < 10000; ++round) {
        const double range = 256 << (round % 6);
        const double turn = part(chance) * M_PI / 6;
        const double sx = range * (0.81 + 0.09 * part(chance)) / 800;
        const double sy = range * (0.81 + 0.09 * part(chance)) / 480;
        tagPanel panel = {0, sx * std::cos(turn), -sx * std::sin(turn),
                          0, sy * std::sin(turn), sy * std::cos(turn)};
        panel.ox = range / 2 - panel.xx * 400 - panel.xy * 240 + 0.03 * range * part(chance);
        panel.oy = range / 2 - panel.yx * 400 - panel.yy * 240 + 0.03 * range * part(chance);
        calibration cal = touched(panel);
        for (int i = 0; i < CALIBRATION_POINTS; ++i) {
            cal.x[i] += int(std::lround(2 * part(chance)));
            cal.y[i] += int(std::lround(2 * part(chance)));
        }
        ASSERT_TRUE(perform_calibration(&cal));
        ASSERT_EQ(cal.a[6], kUnit);
        for (const int first : {0, 3}) {
            double wanted[3];
            solve(cal, first ? cal.yfb : cal.xfb, wanted);
            for (int k = 1; k < 3; ++k)
                worstSlope =
                    std::max(worstSlope, std::fabs(cal.a[first + k] - std::trunc(wanted[k] * kUnit)));
            for (int place = 0; place < CALIBRATION_POINTS; ++place) {
                const int x = cal.x[place];
                const int y = cal.y[place];
                const double reference = wanted[0] + wanted[1] * x + wanted[2] * y;
                worstPlace = std::max(worstPlace, std::fabs(at(cal.a + first, x, y) - reference));
            }
        }
    }
    RecordProperty("worstSlope", std::to_string(worstSlope));
    RecordProperty("worstPlace", std::to_string(worstPlace));
    EXPECT_LE(worstSlope, 1.0);
    EXPECT_LE(worstPlace, 1.0);
}

// The steps in single precision, by hand: five points of a panel that counts as the screen does.
TEST_F(CalibrationFit, APanelThatCountsAsTheScreenIsMappedToItself)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    mark();
    ASSERT_TRUE(perform_calibration(&cal));
    EXPECT_NEAR(cal.a[0], 0, 20);
    EXPECT_NEAR(cal.a[1], kUnit, 1);
    EXPECT_NEAR(cal.a[2], 0, 1);
    EXPECT_NEAR(cal.a[3], 0, 20);
    EXPECT_NEAR(cal.a[4], 0, 1);
    EXPECT_NEAR(cal.a[5], kUnit, 1);
    EXPECT_EQ(cal.a[6], kUnit);
    ASSERT_EQ(traces().size(), 2);
    for (int i = 0; i < 2; ++i) {
        const QStringList parts = traces()[i].split(' ');
        ASSERT_EQ(parts.size(), 3);
        EXPECT_NEAR(parts[1 + i].toDouble(), 1.0, 1e-4);
        EXPECT_NEAR(parts[2 - i].toDouble(), 0.0, 1e-4);
    }
}

TEST_F(CalibrationFit, PartsAreCutTowardsZero)
{
    // 100 counts for 33 pixels: 0.33 of 65536 is 21626.88, and its negative -21626.88.
    calibration cal;
    const int x[] = {0, 1000, 1000, 0, 500};
    const int y[] = {0, 0, 1000, 1000, 500};
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        cal.x[i] = x[i];
        cal.y[i] = y[i];
        cal.xfb[i] = x[i] * 33 / 100;
        cal.yfb[i] = 480 - y[i] * 33 / 100;
    }
    ASSERT_TRUE(perform_calibration(&cal));
    EXPECT_EQ(cal.a[1], 21626);
    EXPECT_EQ(cal.a[5], -21626);
}

TEST_F(CalibrationFit, OneSpotHasNoDeterminant)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        cal.x[i] = 100;
        cal.y[i] = 200;
    }
    cal.a[0] = 5;
    mark();
    EXPECT_FALSE(perform_calibration(&cal));
    EXPECT_EQ(traces(), QStringList{"ts_calibrate: determinant is too small -- 0.000000"});
    EXPECT_EQ(cal.a[0], 5);
    EXPECT_EQ(cal.a[6], 0);
}

TEST_F(CalibrationFit, ADeterminantOfATenthIsEnough)
{
    // Whole positions have whole determinants: 0 is too small, and the next is not.
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    const int x[] = {0, 1, 0, 0, 0};
    const int y[] = {0, 0, 1, 0, 0};
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        cal.x[i] = x[i];
        cal.y[i] = y[i];
    }
    EXPECT_TRUE(perform_calibration(&cal));
}

// Near one spot the sums outgrow the digits of a float, and their difference may fall below zero.
TEST_F(CalibrationFit, ADeterminantFarBelowZeroIsOne)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    const int x[] = {3001, 3002, 3002, 3000, 3000};
    const int y[] = {3000, 3002, 3002, 3001, 3001};
    for (int i = 0; i < CALIBRATION_POINTS; ++i) {
        cal.x[i] = x[i];
        cal.y[i] = y[i];
    }
    mark();
    EXPECT_TRUE(perform_calibration(&cal));
    EXPECT_TRUE(traces().filter("determinant is too small").isEmpty());
    EXPECT_FALSE(calibrationHolds(cal)) << "the proof finds it";
}

TEST_F(CalibrationFit, WhatIsNoNumberDoesNotHold)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    for (int i = 0; i < CALIBRATION_POINTS; ++i)
        cal.x[i] = cal.y[i] = INT_MAX - i;
    EXPECT_TRUE(perform_calibration(&cal));
    for (int part = 0; part < CALIBRATION_PARTS - 1; ++part)
        EXPECT_EQ(cal.a[part], INT_MIN) << part;
    EXPECT_FALSE(calibrationHolds(cal));
}

TEST_F(CalibrationFit, PositionsThatNoPanelHasAreNoHarm)
{
    std::mt19937 chance(11);
    for (int round = 0; round < 2000; ++round) {
        calibration cal = touched({0, 1, 0, 0, 0, 1});
        for (int i = 0; i < CALIBRATION_POINTS; ++i) {
            cal.x[i] = int(chance());
            cal.y[i] = round % 2 ? int(chance()) : int(chance() % 3);
        }
        if (perform_calibration(&cal))
            calibrationHolds(cal);
    }
}

TEST_F(CalibrationFit, APointTenPixelsAwayPassesAndElevenFails)
{
    for (const int sign : {1, -1}) {
        for (int point = 0; point < CALIBRATION_POINTS; ++point) {
            for (const bool isX : {true, false}) {
                calibration cal = touched({0, 1, 0, 0, 0, 1});
                cal.a[1] = cal.a[5] = cal.a[6] = kUnit;
                int& place = isX ? cal.x[point] : cal.y[point];
                place += 10 * sign;
                EXPECT_TRUE(calibrationHolds(cal)) << point;
                place += sign;
                mark();
                EXPECT_FALSE(calibrationHolds(cal)) << point;
                EXPECT_EQ(traces(), QStringList{QString("check error((%1, %2) != (%3, %4)")
                                                    .arg(cal.x[point])
                                                    .arg(cal.y[point])
                                                    .arg(kX[point])
                                                    .arg(kY[point])});
            }
        }
    }
}

TEST_F(CalibrationFit, TheFirstPointThatIsOffIsTold)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    cal.a[1] = cal.a[5] = cal.a[6] = kUnit;
    cal.x[2] += 20;
    cal.x[4] += 30;
    mark();
    EXPECT_FALSE(calibrationHolds(cal));
    EXPECT_EQ(traces(), QStringList{"check error((770, 430) != (750, 430)"});
}

TEST_F(CalibrationFit, AMappingIsTakenInWholeNumbers)
{
    // 10.99 pixels away is 10 in whole numbers.
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    cal.a[1] = cal.a[5] = cal.a[6] = kUnit;
    cal.a[0] = 10 * kUnit + kUnit - 1;
    EXPECT_TRUE(calibrationHolds(cal));
    cal.a[0] = 11 * kUnit;
    EXPECT_FALSE(calibrationHolds(cal));
    cal.a[6] = 0;
    EXPECT_FALSE(calibrationHolds(cal));
}

TEST_F(CalibrationFit, NoMappingIsTooLargeToBeJudged)
{
    calibration cal = touched({0, 1, 0, 0, 0, 1});
    for (int i = 0; i < CALIBRATION_POINTS; ++i)
        cal.x[i] = cal.y[i] = INT_MIN;
    for (int part = 0; part < CALIBRATION_PARTS; ++part)
        cal.a[part] = part % 3 == 0 ? 0 : INT_MIN;
    for (const int divisor : {INT_MIN, -1, 1, INT_MAX}) {
        cal.a[6] = divisor;
        mark();
        EXPECT_FALSE(calibrationHolds(cal));
        EXPECT_EQ(traces().filter("check error").size(), 1);
    }
}
