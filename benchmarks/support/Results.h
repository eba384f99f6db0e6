#pragma once

#include <QString>

#include <vector>

namespace bench {

/// One measured figure; a ratio, or milliseconds where the unit says so.
struct Result
{
    QString name;
    double value = 0;
    QString unit;
    double bar = 0;
    double aim = 0;
    /// The two sides behind the figure, for the reader.
    QString detail;
};

/// The figures of one run, printed as they come.
class Results
{
public:
    void add(const Result& result);
    /// Writes all figures with the machine and the date; false when the file cannot be written.
    bool write(const QString& path) const;
    /// Whether every figure is at its bar or better.
    bool allReached() const;

private:
    std::vector<Result> m_results;
};

/// How many accounts stand for ten thousand and how often each figure is taken.
struct Scale
{
    int accounts = 10000;
    int rounds = 5;
};

} // namespace bench
