#pragma once
// What the benchmarks of the whole phone share: a table of figures against limits.
#include <QString>
#include <vector>

// Figures that are held against a limit of their own, printed as ratios of it.
class RatioTable
{
public:
    void add(const QString& what, double measured, double limit, const QString& unit);
    // True when every figure is within its limit.
    bool print() const;

private:
    struct Row
    {
        QString what;
        double measured;
        double limit;
        QString unit;
    };
    std::vector<Row> m_rows;
};
