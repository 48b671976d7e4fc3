// Loading a year's accounts into a Recordset against a bare loop over the same rows, for years
// of 5,000, 50,000 and 500,000 accounts on SQLCipher and, when ZEP_BENCH_PG_URI or
// ZEP_TEST_PG_URI names a server, on PostgreSQL. Bare: the engine's cursor read value by value;
// on PostgreSQL also a plain libpq read (single-row mode, the fastest plain read; the whole
// result at once in brackets). Targets: Recordset at most 1.2 times the bare loop on the file
// database; at most 0.5 KB per account at the peak of loading on both engines. For the file
// engine it also times opening the file (key derivation and the first read), in the current
// format and in the old one (compatibility mode: the file is held open meanwhile, so it is not
// moved), and a bare scan of 5,000 accounts in the old format.
#include "Benchdaten.h"
#include "jahr/Demodaten.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/SqlCipherDatabase.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <libpq-fe.h>
#include <malloc.h>
#include <map>

using namespace platform::storage;
namespace bd = benchdaten;

namespace {

const QString Abfrage
    = QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr");

struct Zeit
{
    double real = 0; // ms
    double cpu = 0; // ms of this process
};

double cpuMs()
{
    timespec t {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

// Runs of one measurement: (engine, size, what) -> times.
std::map<std::tuple<Engine, int, std::string>, std::vector<Zeit>> &laeufe()
{
    static std::map<std::tuple<Engine, int, std::string>, std::vector<Zeit>> l;
    return l;
}

struct Speicher
{
    double gepackt = 0; // bytes per account the rows keep
    double spitze = 0; // peak RSS growth per account while loading
    double danach = 0; // RSS growth per account once loaded
};
std::map<std::pair<Engine, int>, Speicher> &speicher()
{
    static std::map<std::pair<Engine, int>, Speicher> s;
    return s;
}

struct Fall
{
    Engine engine;
    int konten;
    QString ort;
};

qint64 cursorSchleife(Database &db)
{
    auto c = db.query(Abfrage, {bd::Jahr});
    const int n = c->spaltenAnzahl();
    qint64 summe = 0;
    while (c->next()) {
        for (int i = 0; i < n; ++i) {
            switch (c->art(i)) {
            case Wertart::Null:
                break;
            case Wertart::Ganzzahl:
                summe += c->ganzzahl(i);
                break;
            case Wertart::Kommazahl:
                summe += qint64(c->kommazahl(i));
                break;
            case Wertart::Text:
            case Wertart::Datum: {
                const QByteArrayView t = c->utf8(i);
                summe += t.size() ? t.front() : 0;
                break;
            }
            }
        }
    }
    return summe;
}

// Every value of the year through plain libpq, touched once.
qint64 libpqLesen(PGconn *conn, bool zeilenweise)
{
    const QByteArray jahr = QByteArray::number(bd::Jahr);
    const char *werte[] = {jahr.constData()};
    const char *sql = "SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = $1 ORDER BY KontoNr";
    qint64 summe = 0;
    const auto beruehren = [&](const PGresult *r) {
        const int zeilen = PQntuples(r);
        const int spalten = PQnfields(r);
        for (int z = 0; z < zeilen; ++z) {
            for (int s = 0; s < spalten; ++s) {
                if (!PQgetisnull(r, z, s))
                    summe += PQgetlength(r, z, s) + PQgetvalue(r, z, s)[0];
            }
        }
    };
    if (!zeilenweise) {
        PGresult *r = PQexecParams(conn, sql, 1, nullptr, werte, nullptr, nullptr, 0);
        beruehren(r);
        PQclear(r);
        return summe;
    }
    PQsendQueryParams(conn, sql, 1, nullptr, werte, nullptr, nullptr, 0);
    PQsetSingleRowMode(conn);
    while (PGresult *r = PQgetResult(conn)) {
        beruehren(r);
        PQclear(r);
    }
    return summe;
}

template<typename F> void messen(benchmark::State &state, const Fall *f, const char *was, F &&tun)
{
    auto &zeiten = laeufe()[{f->engine, f->konten, was}];
    for (auto _ : state) {
        QElapsedTimer uhr;
        uhr.start();
        const double cpu = cpuMs();
        tun();
        const Zeit z {double(uhr.nsecsElapsed()) / 1e6, cpuMs() - cpu};
        zeiten.push_back(z);
        state.SetIterationTime(z.real / 1e3);
    }
}

void recordsetLaden(benchmark::State &state, const Fall *f)
{
    auto db = Database::open(f->ort);
    messen(state, f, "recordset", [&] {
        Recordset rs(db, Abfrage, {bd::Jahr});
        benchmark::DoNotOptimize(rs.RecordCount());
    });
}

void bareSchleife(benchmark::State &state, const Fall *f)
{
    auto db = Database::open(f->ort);
    messen(state, f, "cursor", [&] { benchmark::DoNotOptimize(cursorSchleife(*db)); });
}

void libpq(benchmark::State &state, const Fall *f, bool zeilenweise)
{
    PGconn *conn = PQconnectdb(f->ort.toUtf8().constData());
    messen(state, f, zeilenweise ? "libpq" : "libpq ganz",
           [&] { benchmark::DoNotOptimize(libpqLesen(conn, zeilenweise)); });
    PQfinish(conn);
}

void dateiOeffnen(benchmark::State &state, const Fall *f, const char *was)
{
    messen(state, f, was, [&] {
        auto db = Database::openSeparate(f->ort);
        benchmark::DoNotOptimize(db->scalar(QStringLiteral("SELECT COUNT(*) FROM sqlite_master")));
    });
}

void speicherMessen(const Fall &f)
{
    auto db = Database::open(f.ort);
    // The engine's own caches are warm, as they are when a user opens a year.
    cursorSchleife(*db);
    malloc_trim(0);
    bd::spitzeZuruecksetzen();
    const qint64 vorher = bd::rssBytes();
    auto rs = std::make_unique<Recordset>(db, Abfrage, QVariantList {bd::Jahr});
    const double n = rs->RecordCount();
    speicher()[{f.engine, f.konten}]
        = {double(rs->speicherBytes()) / n, double(bd::spitzeBytes() - vorher) / n,
           double(bd::rssBytes() - vorher) / n};
}

double mittel(Engine e, int konten, const std::string &was, bool cpu)
{
    std::vector<double> werte;
    for (const Zeit &z : laeufe()[{e, konten, was}])
        werte.push_back(cpu ? z.cpu : z.real);
    return bd::median(werte);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    std::vector<Fall> faelle;
    // The old format: 5,000 demo accounts in a file of its own, held open by a second
    // connection so that opening it does not move it.
    QTemporaryDir dir;
    const Fall alt {Engine::SqlCipher, 5000, dir.filePath(QStringLiteral("alt.db"))};
    SqlCipherDatabase::Zeiger altHalten;
    QString version;
    try {
        altHalten = SqlCipherDatabase::anlegen(alt.ort, DBPasswort, SqlCipherDatabase::Format::Alt);
        jahr::jahrErzeugen(*altHalten, bd::Jahr, alt.konten);
        for (const Engine e : bd::engines()) {
            for (const int n : bd::groessen())
                faelle.push_back({e, n, bd::datenbank(e, n)});
        }
        for (const Fall &f : faelle)
            speicherMessen(f);
        version = Database::openSeparate(faelle.front().ort)
                      ->scalar(QStringLiteral("PRAGMA cipher_version"))
                      .toString();
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        return 1;
    }
    // Three runs each, the Recordset and the bare loops taking turns.
    for (const Fall &f : faelle) {
        const std::string n
            = (bd::engineName(f.engine) + QStringLiteral("/%1").arg(f.konten)).toStdString();
        const auto anmelden = [&](const std::string &name, auto funktion) {
            benchmark::RegisterBenchmark((name + "/" + n).c_str(), funktion)
                ->Iterations(3)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        };
        if (f.engine == Engine::SqlCipher) {
            anmelden("Datei_oeffnen",
                     [&f](benchmark::State &s) { dateiOeffnen(s, &f, "oeffnen"); });
        }
        anmelden("Recordset_laden", [&f](benchmark::State &s) { recordsetLaden(s, &f); });
        anmelden("Cursor_Schleife", [&f](benchmark::State &s) { bareSchleife(s, &f); });
        if (f.engine == Engine::PostgreSql) {
            anmelden("libpq_zeilenweise", [&f](benchmark::State &s) { libpq(s, &f, true); });
            anmelden("libpq_ganz", [&f](benchmark::State &s) { libpq(s, &f, false); });
        }
    }
    benchmark::RegisterBenchmark("Datei_oeffnen/SQLCipher 3/5000",
                                 [&alt](benchmark::State &s) { dateiOeffnen(s, &alt, "oeffnen alt"); })
        ->Iterations(3)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Cursor_Schleife/SQLCipher 3/5000",
                                 [&alt](benchmark::State &s) {
                                     auto db = Database::open(alt.ort);
                                     messen(s, &alt, "cursor alt", [&] {
                                         benchmark::DoNotOptimize(cursorSchleife(*db));
                                     });
                                 })
        ->Iterations(3)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    std::printf("\nMediane aus drei Läufen, ms real / CPU dieses Prozesses; Last: %s\n",
                qPrintable(bd::last()));
    std::printf("%-10s %7s %17s %17s %13s %17s %17s %13s %8s %8s %8s %9s\n", "Engine", "Konten",
                "Recordset", "Cursor", "Faktor", "libpq", "(libpq ganz)", "Faktor libpq", "B/Konto",
                "Spitze", "danach", "Ziel");
    for (const Fall &f : faelle) {
        const auto z = [&](const char *was, bool cpu) {
            return mittel(f.engine, f.konten, was, cpu);
        };
        const auto faktor = [](double a, double b) {
            return b > 0 ? a / b : 0.0;
        };
        const bool pg = f.engine == Engine::PostgreSql;
        const Speicher &s = speicher()[{f.engine, f.konten}];
        std::printf("%-10s %7d %8.0f / %6.0f %8.0f / %6.0f %5.2f / %5.2f ",
                    qPrintable(bd::engineName(f.engine)), f.konten, z("recordset", false),
                    z("recordset", true), z("cursor", false), z("cursor", true),
                    faktor(z("recordset", false), z("cursor", false)),
                    faktor(z("recordset", true), z("cursor", true)));
        if (pg) {
            std::printf("%8.0f / %6.0f %8.0f / %6.0f %5.2f / %5.2f ", z("libpq", false),
                        z("libpq", true), z("libpq ganz", false), z("libpq ganz", true),
                        faktor(z("recordset", false), z("libpq", false)),
                        faktor(z("recordset", true), z("libpq", true)));
        } else {
            std::printf("%17s %17s %13s ", "-", "-", "-");
        }
        // The load's factor counts on the file database, by CPU time (steady on a shared
        // machine); the peak on both engines.
        const bool ok
            = s.spitze <= 512 && (pg || faktor(z("recordset", true), z("cursor", true)) <= 1.2);
        std::printf("%8.0f %8.0f %8.0f %9s\n", s.gepackt, s.spitze, s.danach,
                    ok ? "erreicht" : "verfehlt");
    }
    std::printf("Ziele: Recordset höchstens 1,2 x Cursor (Dateidatenbank, CPU); Spitze höchstens "
                "512 Bytes je Konto.\n");
    // Opening and a bare scan in the two file formats.
    std::printf("\nSQLCipher %s: Datei öffnen (Schlüsselableitung und erstes Lesen), "
                "Durchlauf (ms real / CPU)\n",
                qPrintable(version));
    for (const Fall &f : faelle) {
        if (f.engine != Engine::SqlCipher)
            continue;
        std::printf("  neues Format, %6d Konten   %7.1f / %6.1f %9.1f / %6.1f\n", f.konten,
                    mittel(f.engine, f.konten, "oeffnen", false),
                    mittel(f.engine, f.konten, "oeffnen", true),
                    mittel(f.engine, f.konten, "cursor", false),
                    mittel(f.engine, f.konten, "cursor", true));
    }
    std::printf("  altes Format, %6d Konten   %7.1f / %6.1f %9.1f / %6.1f\n", alt.konten,
                mittel(alt.engine, alt.konten, "oeffnen alt", false),
                mittel(alt.engine, alt.konten, "oeffnen alt", true),
                mittel(alt.engine, alt.konten, "cursor alt", false),
                mittel(alt.engine, alt.konten, "cursor alt", true));
    return 0;
}
