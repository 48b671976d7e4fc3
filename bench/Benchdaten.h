#pragma once

#include "platform/storage/Database.h"

#include <QString>
#include <vector>

// Generated years for the benchmarks and what they measure with.
namespace benchdaten {

using platform::storage::Engine;

// The booking year the benchmarks read; the year after it holds most of the same accounts,
// some with other definitions, for the year change preview.
inline constexpr int Jahr = 2003;

// Sizes of office the benchmarks run with.
inline const std::vector<int> &groessen();

// The location of a database whose year `Jahr` holds `konten` accounts (53 columns as the real
// table): an encrypted file in $ZEP_BENCH_DIR (default: the temporary folder) or a database on
// the PostgreSQL server of ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI. Made once and kept for later runs;
// the accounts are the demo generator's (at most 5,000) and copies of them under new numbers,
// inserted in one transaction by a few statements.
QString datenbank(Engine e, int konten);

// The engines to measure: the file database, and PostgreSQL when a server is named.
std::vector<Engine> engines();
QString engineName(Engine e);
// Base URI of the PostgreSQL server ("" when none is named).
QString pgUri();

// Memory of this process: resident now, and the peak since spitzeZuruecksetzen().
qint64 rssBytes();
qint64 spitzeBytes();
void spitzeZuruecksetzen();

// The p-quantile (0..1) of the values.
double quantil(std::vector<double> werte, double p);
double median(std::vector<double> werte);
// "1.23 0.98 0.87" from /proc/loadavg.
QString last();

} // namespace benchdaten

inline const std::vector<int> &benchdaten::groessen()
{
    static const std::vector<int> g = [] {
        // ZEP_BENCH_GROESSEN="5000,50000" runs a part.
        std::vector<int> werte;
        const QString text = qEnvironmentVariable("ZEP_BENCH_GROESSEN");
        for (const QString &t : text.split(QLatin1Char(','), Qt::SkipEmptyParts))
            werte.push_back(t.trimmed().toInt());
        if (werte.empty())
            werte = {5000, 50000, 500000};
        return werte;
    }();
    return g;
}
