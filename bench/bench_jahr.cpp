// The year tools on a generated year of 50,000 accounts, on SQLCipher and, when
// ZEP_BENCH_PG_URI or ZEP_TEST_PG_URI names a test cluster, on PostgreSQL: the whole-year check,
// the CSV export and the import trial run of that file into an empty year.
#include "accounts/regeln/Jahrespruefung.h"
#include "common/TestDatenbank.h"
#include "frame/Demodaten.h"
#include "jahr/KontenCsv.h"
#include "platform/storage/Database.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <vector>

using platform::storage::Database;

namespace {

constexpr int Konten = 50000;
constexpr int Jahr = 2003;

struct Ort
{
    QString name;
    std::shared_ptr<Database> db;
};

std::vector<Ort> &orte()
{
    static std::vector<Ort> o;
    return o;
}

QTemporaryDir &ordner()
{
    static QTemporaryDir d;
    return d;
}

void pruefen(benchmark::State &state, const Ort *o)
{
    size_t befunde = 0;
    for (auto _ : state)
        befunde = kontenregeln::jahrPruefen(*o->db, Jahr).size();
    state.counters["konten"] = Konten;
    state.counters["befunde"] = double(befunde);
}

void exportieren(benchmark::State &state, const Ort *o)
{
    const QString datei = ordner().filePath(o->name + QStringLiteral(".csv"));
    for (auto _ : state) {
        const auto e = jahr::exportieren(*o->db, Jahr, datei);
        if (!e.fehler.isEmpty())
            state.SkipWithError(qPrintable(e.fehler));
    }
}

void probelauf(benchmark::State &state, const Ort *o)
{
    const QString datei = ordner().filePath(o->name + QStringLiteral(".csv"));
    if (!jahr::exportieren(*o->db, Jahr, datei).fehler.isEmpty()) {
        state.SkipWithError("Export fehlgeschlagen");
        return;
    }
    size_t fehler = 0;
    for (auto _ : state)
        fehler = jahr::importieren(*o->db, Jahr + 1, datei, true).fehler.size();
    state.counters["fehler"] = double(fehler);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    try {
        QElapsedTimer t;
        t.start();
        auto db = Database::open(testhilfe::neueDatenbank(testhilfe::Engine::SqlCipher));
        frame::jahrErzeugen(*db, Jahr, Konten);
        orte().push_back({QStringLiteral("SQLCipher"), db});
        std::printf("SQLCipher: %d Konten erzeugt in %.1f s\n", Konten, double(t.elapsed()) / 1e3);
        QString uri = qEnvironmentVariable("ZEP_BENCH_PG_URI");
        if (uri.isEmpty())
            uri = qEnvironmentVariable("ZEP_TEST_PG_URI");
        if (uri.isEmpty()) {
            std::printf("PostgreSQL übersprungen: ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI nicht "
                        "gesetzt.\n");
        } else {
            qputenv("ZEP_TEST_PG_URI", uri.toUtf8());
            t.restart();
            auto pg = Database::open(testhilfe::neueDatenbank(testhilfe::Engine::PostgreSql));
            frame::jahrErzeugen(*pg, Jahr, Konten);
            orte().push_back({QStringLiteral("PostgreSQL"), pg});
            std::printf("PostgreSQL: %d Konten erzeugt in %.1f s\n", Konten,
                        double(t.elapsed()) / 1e3);
        }
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        testhilfe::dropAll();
        return 1;
    }
    for (const Ort &o : orte()) {
        benchmark::RegisterBenchmark(("Jahr_pruefen/" + o.name).toStdString().c_str(), pruefen, &o)
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("Export_csv/" + o.name).toStdString().c_str(), exportieren,
                                     &o)
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("Import_probelauf/" + o.name).toStdString().c_str(),
                                     probelauf, &o)
            ->Iterations(3)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    orte().clear();
    testhilfe::dropAll();
    return 0;
}
