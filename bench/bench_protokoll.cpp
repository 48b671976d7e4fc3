// The change log's cost: saving one changed account through the record set with and without
// the log's triggers (p95 of single saves, on SQLCipher and, when ZEP_BENCH_PG_URI or
// ZEP_TEST_PG_URI names a test cluster, on PostgreSQL), and the chain check over 1,000,000
// entries of a file database. The end of the output sets the figures beside their targets: a
// save with the log at most 1 ms slower (p95) than without, the check within 10 s. The CPU
// time beside the clock time tells a missed target of the code from a busy machine.
#include "common/TestDatenbank.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <map>
#include <vector>

using namespace platform::storage;

namespace {

constexpr int Eintraege = 1000000;
constexpr double ZielMehrkostenMs = 1.0; // p95 of a save, with the log against without
constexpr double ZielPruefenS = 10.0;

// The figures the summary sets beside their targets.
struct Zahlen
{
    double p95Ms = 0;
    double p95CpuMs = 0; // this thread's CPU; on PostgreSQL without the server's share
};
std::map<QString, Zahlen> speicherZahlen; // by Ort::name
double pruefenS = 0;
double pruefenCpuS = 0;

qint64 cpuNs(clockid_t uhr)
{
    timespec t {};
    clock_gettime(uhr, &t);
    return qint64(t.tv_sec) * 1000000000 + t.tv_nsec;
}

struct Ort
{
    QString name;
    std::shared_ptr<Database> db;
};

std::shared_ptr<Database> kontoDatenbank(testhilfe::Engine e, bool mitProtokoll)
{
    auto db = Database::openSeparate(testhilfe::neueDatenbank(e));
    schemaAnlegen(*db);
    db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                               "KontoBezeichnung) VALUES ('2000', 2003, 'Bank')"));
    if (!mitProtokoll) {
        if (e == testhilfe::Engine::PostgreSql) {
            db->execute(QStringLiteral("DROP TRIGGER zep_protokoll ON ObjKanzleiKontenstamm"));
        } else {
            for (const char *a : {"e", "a", "l"})
                db->execute(QStringLiteral("DROP TRIGGER zep_protokoll_v1_ObjKanzleiKontenstamm_%1")
                                .arg(QLatin1String(a)));
        }
    }
    return db;
}

// One save as the screen makes it: edit the shown row, change a field, update.
void speichern(benchmark::State &state, const Ort *o)
{
    Recordset rs(o->db, QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                 {2003});
    std::vector<qint64> zeiten;
    std::vector<qint64> cpu;
    int n = 0;
    for (auto _ : state) {
        QElapsedTimer t;
        const qint64 c0 = cpuNs(CLOCK_THREAD_CPUTIME_ID);
        t.start();
        rs.Edit();
        rs.setFeld(QStringLiteral("KontoBezeichnung"), QStringLiteral("Bank %1").arg(++n));
        rs.Update();
        zeiten.push_back(t.nsecsElapsed());
        cpu.push_back(cpuNs(CLOCK_THREAD_CPUTIME_ID) - c0);
    }
    std::sort(zeiten.begin(), zeiten.end());
    std::sort(cpu.begin(), cpu.end());
    const Zahlen z {double(zeiten[zeiten.size() * 95 / 100]) / 1e6,
                    double(cpu[cpu.size() * 95 / 100]) / 1e6};
    state.counters["p50_ms"] = double(zeiten[zeiten.size() / 2]) / 1e6;
    state.counters["p95_ms"] = z.p95Ms;
    state.counters["p95_cpu_ms"] = z.p95CpuMs;
    speicherZahlen[o->name] = z;
}

// A log of 1,000,000 chained entries, written directly (as a long-used office's would be).
std::shared_ptr<Database> langesProtokoll()
{
    auto db = kontoDatenbank(testhilfe::Engine::SqlCipher, true);
    Transaktion tx(*db);
    QString vorher = db->scalar(QStringLiteral("SELECT Hash FROM Aenderungsprotokoll "
                                               "ORDER BY Nr DESC LIMIT 1"))
                         .toString();
    qint64 nr = db->scalar(QStringLiteral("SELECT max(Nr) FROM Aenderungsprotokoll")).toLongLong();
    Protokolleintrag e;
    e.zeit = QStringLiteral("2026-11-23T10:00:00.000Z");
    e.wer = QStringLiteral("buchhaltung");
    e.arbeitsplatz = QStringLiteral("platz-3");
    e.quelle = protokollquelle::Bildschirm;
    e.tabelle = QStringLiteral("ObjKanzleiKontenstamm");
    e.jahr = 2003;
    e.feld = QStringLiteral("KontoBezeichnung");
    while (nr < Eintraege) {
        e.nr = ++nr;
        e.konto = QString::number(1000 + nr % 9000);
        e.alt = QStringLiteral("Bezeichnung %1").arg(nr - 1);
        e.neu = QStringLiteral("Bezeichnung %1").arg(nr);
        e.hash = Aenderungsprotokoll::hashBerechnen(e, vorher);
        db->execute(QStringLiteral("INSERT INTO Aenderungsprotokoll (Nr, Zeit, Wer, Arbeitsplatz, "
                                   "Quelle, Tabelle, Jahr, Konto, Feld, Alt, Neu, Hash) VALUES "
                                   "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
                    {e.nr, e.zeit, e.wer, e.arbeitsplatz, e.quelle, e.tabelle, *e.jahr, e.konto,
                     e.feld, *e.alt, *e.neu, e.hash});
        vorher = e.hash;
    }
    tx.commit();
    return db;
}

void kettePruefen(benchmark::State &state, const Ort *o)
{
    Pruefergebnis p;
    double langsamste = 0;
    double cpu = 0;
    for (auto _ : state) {
        QElapsedTimer t;
        const qint64 c0 = cpuNs(CLOCK_PROCESS_CPUTIME_ID);
        t.start();
        p = Aenderungsprotokoll::pruefen(*o->db);
        const double s = double(t.nsecsElapsed()) / 1e9;
        if (s > langsamste) {
            langsamste = s;
            cpu = double(cpuNs(CLOCK_PROCESS_CPUTIME_ID) - c0) / 1e9;
        }
    }
    if (p.fehlerNr != 0)
        state.SkipWithError(qPrintable(p.meldung));
    state.counters["eintraege"] = double(p.anzahl);
    pruefenS = langsamste;
    pruefenCpuS = cpu;
}

const char *urteil(double wert, double ziel)
{
    return wert <= ziel ? "erreicht" : "VERFEHLT";
}

void zusammenfassen()
{
    std::printf("\nZiele (maßgeblich sind Mediane mehrerer Läufe auf ruhiger Maschine):\n");
    for (const auto &[name, mit] : speicherZahlen) {
        if (!name.endsWith(QLatin1String("/mit_Protokoll")))
            continue;
        const QString engine = name.section(QLatin1Char('/'), 0, 0);
        const auto ohne = speicherZahlen.find(engine + QStringLiteral("/ohne_Protokoll"));
        if (ohne == speicherZahlen.end())
            continue;
        const double mehr = mit.p95Ms - ohne->second.p95Ms;
        const double mehrCpu = mit.p95CpuMs - ohne->second.p95CpuMs;
        std::printf("  %s, Speichern p95: ohne Protokoll %.3f ms, mit %.3f ms, also %+.3f ms "
                    "(CPU %+.3f ms); Ziel höchstens %+.1f ms: %s\n",
                    qPrintable(engine), ohne->second.p95Ms, mit.p95Ms, mehr, mehrCpu,
                    ZielMehrkostenMs, urteil(mehr, ZielMehrkostenMs));
    }
    if (pruefenS > 0) {
        std::printf("  SQLCipher, protokoll pruefen über %d Einträge: %.2f s (CPU %.2f s); Ziel "
                    "höchstens %.0f s: %s\n",
                    Eintraege, pruefenS, pruefenCpuS, ZielPruefenS, urteil(pruefenS, ZielPruefenS));
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    std::vector<Ort> speicherOrte;
    Ort kette;
    try {
        QString uri = qEnvironmentVariable("ZEP_BENCH_PG_URI");
        if (uri.isEmpty())
            uri = qEnvironmentVariable("ZEP_TEST_PG_URI");
        else
            qputenv("ZEP_TEST_PG_URI", uri.toUtf8());
        for (const auto e : {testhilfe::Engine::SqlCipher, testhilfe::Engine::PostgreSql}) {
            if (e == testhilfe::Engine::PostgreSql && uri.isEmpty()) {
                std::printf("PostgreSQL übersprungen: ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI nicht "
                            "gesetzt.\n");
                continue;
            }
            const QString name = testhilfe::engineName(e);
            speicherOrte.push_back(
                {name + QStringLiteral("/ohne_Protokoll"), kontoDatenbank(e, false)});
            speicherOrte.push_back(
                {name + QStringLiteral("/mit_Protokoll"), kontoDatenbank(e, true)});
        }
        QElapsedTimer t;
        t.start();
        kette = {QStringLiteral("SQLCipher"), langesProtokoll()};
        std::printf("SQLCipher: %d Protokolleinträge erzeugt in %.1f s\n", Eintraege,
                    double(t.elapsed()) / 1e3);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        testhilfe::dropAll();
        return 1;
    }
    for (const Ort &o : speicherOrte) {
        benchmark::RegisterBenchmark(("Speichern/" + o.name).toStdString().c_str(), speichern, &o)
            ->Iterations(2000)
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("Protokoll_pruefen_1000000/SQLCipher", kettePruefen, &kette)
        ->Iterations(2)
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    zusammenfassen();
    speicherOrte.clear();
    kette.db.reset();
    testhilfe::dropAll();
    return 0;
}
