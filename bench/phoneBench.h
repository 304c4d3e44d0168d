#pragma once
// What the benchmarks of the whole phone share: what they are asked for, and a table of figures against
// limits.
#include <QString>
#include <QStringList>
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

// The parts that the command line names; all of them where it names none.
QStringList benchParts(int argc, char** argv, const QStringList& all);
// For what is drawn at random: that of HX_CALLS_SEED, else another one each time; printed.
unsigned benchSeed();
