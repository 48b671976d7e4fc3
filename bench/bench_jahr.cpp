// The year tools on generated years of 5,000, 50,000 and 500,000 accounts, on SQLCipher and,
// when ZEP_BENCH_PG_URI or ZEP_TEST_PG_URI names a server, on PostgreSQL: `pruefen`, `export`,
// `import --probelauf` (the exported file into an empty year) and `jahreswechsel --vorschau`
// (into the next year, which holds nine of ten accounts). Each with its time, how often and how
// regularly it reported progress, and its peak memory per account, beside a bare cursor read of
// the same year.
// Targets at 500,000 accounts: each within 15 s, at most 1 KB per account.
#include "Benchdaten.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "jahr/Jahreswechsel.h"
#include "jahr/KontenCsv.h"
#include "platform/storage/Database.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <ctime>
#include <malloc.h>
#include <map>

using platform::storage::Database;
using platform::storage::Engine;
using platform::storage::Wertart;
namespace bd = benchdaten;

namespace {

struct Fall
{
    Engine engine;
    int konten;
    QString ort;
};

struct Ergebnis
{
    std::vector<double> ms;
    std::vector<double> cpu; // ms of this process
    std::vector<double> spitze; // bytes per account
    std::vector<double> meldungen; // progress reports
    std::vector<double> pause; // longest time without a progress report, ms
    QString hinweis; // what the tool found
};

std::map<std::tuple<Engine, int, std::string>, Ergebnis> &ergebnisse()
{
    static std::map<std::tuple<Engine, int, std::string>, Ergebnis> e;
    return e;
}

QTemporaryDir &ordner()
{
    static QTemporaryDir d;
    return d;
}

QString csvDatei(const Fall &f)
{
    return ordner().filePath(
        QStringLiteral("%1-%2.csv").arg(bd::engineName(f.engine)).arg(f.konten));
}

double cpuMs()
{
    timespec t {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

// Runs `tun` with a progress report that counts itself; `tun` returns what the tool found.
void messen(benchmark::State &state, const Fall *f, const std::string &was,
            const std::function<QString(const kontenregeln::Fortschritt &)> &tun)
{
    Ergebnis &e = ergebnisse()[{f->engine, f->konten, was}];
    for (auto _ : state) {
        auto db = Database::open(f->ort); // opened before: not the tool's memory
        malloc_trim(0);
        bd::spitzeZuruecksetzen();
        const qint64 vorher = bd::rssBytes();
        QElapsedTimer uhr;
        uhr.start();
        const double cpu = cpuMs();
        QElapsedTimer seitMeldung;
        seitMeldung.start();
        double pause = 0;
        int meldungen = 0;
        e.hinweis = tun([&](qint64, qint64) {
            ++meldungen;
            pause = std::max(pause, double(seitMeldung.nsecsElapsed()) / 1e6);
            seitMeldung.restart();
        });
        const double dauer = double(uhr.nsecsElapsed()) / 1e6;
        pause = std::max(pause, double(seitMeldung.nsecsElapsed()) / 1e6);
        e.ms.push_back(dauer);
        e.cpu.push_back(cpuMs() - cpu);
        e.spitze.push_back(double(bd::spitzeBytes() - vorher) / f->konten);
        e.meldungen.push_back(meldungen);
        e.pause.push_back(pause);
        state.SetIterationTime(dauer / 1e3);
    }
}

// The bare engine: a cursor loop over the year's rows, every value touched.
void rohLesen(benchmark::State &state, const Fall *f)
{
    messen(state, f, "roh", [f](const kontenregeln::Fortschritt &) {
        auto db = Database::open(f->ort);
        auto c = db->query(
            QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr"),
            {bd::Jahr});
        qint64 summe = 0;
        while (c->next()) {
            for (int i = 0; i < c->spaltenAnzahl(); ++i) {
                if (c->art(i) == Wertart::Ganzzahl)
                    summe += c->ganzzahl(i);
                else if (c->art(i) != Wertart::Null)
                    summe += c->utf8(i).size();
            }
        }
        return QStringLiteral("Summe %1").arg(summe);
    });
}

void pruefen(benchmark::State &state, const Fall *f)
{
    messen(state, f, "pruefen", [f](const kontenregeln::Fortschritt &fortschritt) {
        const auto befunde
            = kontenregeln::jahrPruefen(*Database::open(f->ort), bd::Jahr, fortschritt);
        return QStringLiteral("%1 Befunde").arg(befunde.size());
    });
}

void exportieren(benchmark::State &state, const Fall *f)
{
    messen(state, f, "export", [f](const kontenregeln::Fortschritt &fortschritt) {
        const auto e
            = jahr::exportieren(*Database::open(f->ort), bd::Jahr, csvDatei(*f), fortschritt);
        return e.fehler.isEmpty() ? QStringLiteral("%1 Konten").arg(e.konten) : e.fehler;
    });
}

void probelauf(benchmark::State &state, const Fall *f)
{
    if (!QFileInfo::exists(csvDatei(*f)))
        jahr::exportieren(*Database::open(f->ort), bd::Jahr, csvDatei(*f));
    messen(state, f, "import --probelauf", [f](const kontenregeln::Fortschritt &fortschritt) {
        const auto e = jahr::importieren(*Database::open(f->ort), bd::Jahr + 10, csvDatei(*f), true,
                                         fortschritt);
        return QStringLiteral("%1 Zeilen, %2 Fehler").arg(e.konten).arg(e.fehler.size());
    });
}

void vorschau(benchmark::State &state, const Fall *f)
{
    messen(state, f, "jahreswechsel --vorschau", [f](const kontenregeln::Fortschritt &fortschritt) {
        const auto e = jahr::jahreswechsel(*Database::open(f->ort), bd::Jahr, bd::Jahr + 1, true,
                                           fortschritt);
        return QStringLiteral("%1 neu, %2 abweichend, %3 gleich")
            .arg(e.neu.size())
            .arg(e.abweichend.size())
            .arg(e.gleich);
    });
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    std::vector<Fall> faelle;
    try {
        for (const Engine e : bd::engines()) {
            for (const int n : bd::groessen())
                faelle.push_back({e, n, bd::datenbank(e, n)});
        }
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        return 1;
    }
    const std::vector<std::pair<std::string, void (*)(benchmark::State &, const Fall *)>>
        werkzeuge {{"roh", rohLesen},
                   {"pruefen", pruefen},
                   {"export", exportieren},
                   {"import --probelauf", probelauf},
                   {"jahreswechsel --vorschau", vorschau}};
    for (const Fall &f : faelle) {
        const std::string n
            = (bd::engineName(f.engine) + QStringLiteral("/%1").arg(f.konten)).toStdString();
        for (const auto &[name, funktion] : werkzeuge) {
            auto *fn = funktion;
            QString kurz = QString::fromStdString(name);
            kurz.replace(QLatin1String(" --"), QLatin1String("_"));
            benchmark::RegisterBenchmark((kurz.toStdString() + "/" + n).c_str(),
                                         [&f, fn](benchmark::State &s) { fn(s, &f); })
                ->Iterations(3)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();

    // Time real and of this process's CPU (on PostgreSQL without the server's share), each
    // beside the bare engine's read of the same year ("roh") and the ratio.
    std::printf("\nJahreswerkzeuge, Mediane aus drei Läufen; Last: %s\n", qPrintable(bd::last()));
    std::printf("%-10s %7s %-25s %15s %15s %13s %10s %9s %10s %8s  %s\n", "Engine", "Konten",
                "Werkzeug", "s real / CPU", "roh real / CPU", "x roh", "Spitze B/K", "Meldungen",
                "Pause ms", "Ziel", "Ergebnis");
    for (const Fall &f : faelle) {
        const Ergebnis &roh = ergebnisse()[{f.engine, f.konten, "roh"}];
        const double rohS = bd::median(roh.ms) / 1e3;
        const double rohCpu = bd::median(roh.cpu) / 1e3;
        for (const auto &[name, funktion] : werkzeuge) {
            if (name == "roh")
                continue;
            const Ergebnis &e = ergebnisse()[{f.engine, f.konten, name}];
            const double s = bd::median(e.ms) / 1e3;
            const double cpu = bd::median(e.cpu) / 1e3;
            const double spitze = bd::median(e.spitze);
            const bool ok = s <= 15 && spitze <= 1024;
            const char *ziel = f.konten < 500000 ? "-" : ok ? "erreicht" : "verfehlt";
            std::printf("%-10s %7d %-25s %7.2f / %5.2f %7.2f / %5.2f %5.1f / %5.1f %10.0f %9.0f "
                        "%10.0f %8s  %s\n",
                        qPrintable(bd::engineName(f.engine)), f.konten, name.c_str(), s, cpu, rohS,
                        rohCpu, rohS > 0 ? s / rohS : 0.0, rohCpu > 0 ? cpu / rohCpu : 0.0, spitze,
                        bd::median(e.meldungen), bd::median(e.pause), ziel, qPrintable(e.hinweis));
        }
    }
    std::printf("Ziele bei 500.000 Konten: je höchstens 15 s und 1.024 Bytes je Konto.\n");
    return 0;
}
