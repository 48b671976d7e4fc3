// The account screen on a generated year of 50,000 accounts, on SQLCipher and, when
// ZEP_BENCH_PG_URI or ZEP_TEST_PG_URI names a test cluster, on PostgreSQL:
// - opening: construction to the first record shown, against the bare engine load of the same
//   year (a Recordset over the same query) in the same run;
// - Page Down through 1,000 records: median and 95th percentile per record, and the server
//   round trips per record.
// Run offscreen (QT_QPA_PLATFORM=offscreen) and with an optimised build before reading figures.
#include "accounts/frmKontenStamm.h"
#include "common/TestDatenbank.h"
#include "frame/Demodaten.h"
#include "frame/mdlKontenStamm.h"
#include "platform/storage/Database.h"
#include "platform/storage/Recordset.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <vector>

using platform::storage::Database;
namespace mks = mdlKontenStamm;

namespace {

constexpr int Konten = 50000;
constexpr int Jahr = 2003;
constexpr int Schritte = 1000;
constexpr int TasteBildAb = 34;

struct Ort
{
    QString name;
    QString ort;
    std::shared_ptr<Database> db;
};

std::vector<Ort> &orte()
{
    static std::vector<Ort> o;
    return o;
}

void sitzung(const Ort &o)
{
    mks::zuruecksetzen();
    // The shipped help, as a host hands it over: loading checks it.
    mks::AufrufInfo[mks::slot::Hilfedatei] = QStringLiteral(ZEP_HILFE_QUELLE);
    mks::DatenbankPfad = o.ort;
    mks::Buchungsjahr = Jahr;
    mks::VerarbeitungsBuchungsjahr = Jahr;
    mks::AktuellesProgramm = QStringLiteral("frmKontenStamm");
}

double ms(qint64 ns)
{
    return double(ns) / 1e6;
}

double perzentil(std::vector<qint64> werte, double p)
{
    if (werte.empty())
        return 0;
    std::sort(werte.begin(), werte.end());
    const auto i = std::min(werte.size() - 1, size_t(p * double(werte.size() - 1) + 0.5));
    return double(werte[i]);
}

void oeffnen(benchmark::State &state, const Ort *o)
{
    sitzung(*o);
    platform::MsgBoxProtokoll boxen; // none expected; nothing may block
    qint64 roh = 0;
    qint64 bildschirm = 0;
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        {
            platform::storage::Recordset rs(o->db,
                                            QStringLiteral("SELECT * from ObjKanzleiKontenstamm "
                                                           "WHERE KontoJJ = ? ORDER BY Kontonr"),
                                            {Jahr});
            benchmark::DoNotOptimize(rs.RecordCount());
        }
        roh += t.nsecsElapsed();

        t.restart();
        frmKontenStamm form;
        form.show();
        QApplication::processEvents();
        auto *nr = form.findChild<QLineEdit *>(QStringLiteral("inpKontoNr"));
        if (!nr || nr->text().isEmpty()) {
            state.SkipWithError("kein Datensatz angezeigt");
            return;
        }
        const qint64 dauer = t.nsecsElapsed();
        bildschirm += dauer;
        state.SetIterationTime(double(dauer) / 1e9);
    }
    const double n = double(state.iterations());
    state.counters["oeffnen_ms"] = ms(bildschirm) / n;
    state.counters["roh_laden_ms"] = ms(roh) / n;
    state.counters["verhaeltnis"] = roh > 0 ? double(bildschirm) / double(roh) : 0;
    if (boxen.anzahl() > 0)
        state.SkipWithError(qPrintable(boxen.texte().join(QStringLiteral(" | "))));
}

void bildAb(benchmark::State &state, const Ort *o)
{
    sitzung(*o);
    platform::MsgBoxProtokoll boxen;
    frmKontenStamm form;
    form.show();
    QApplication::processEvents();
    std::vector<qint64> zeiten;
    qint64 rundreisen = 0;
    for (auto _ : state) {
        qint64 summe = 0;
        const qint64 vorher = o->db->roundTrips();
        for (int i = 0; i < Schritte; ++i) {
            QElapsedTimer t;
            t.start();
            int taste = TasteBildAb;
            form.Form_KeyDown(taste);
            const qint64 d = t.nsecsElapsed();
            zeiten.push_back(d);
            summe += d;
        }
        rundreisen += o->db->roundTrips() - vorher;
        state.SetIterationTime(double(summe) / 1e9);
        state.PauseTiming();
        int bildAuf = 33;
        for (int i = 0; i < Schritte; ++i)
            form.Form_KeyDown(bildAuf);
        state.ResumeTiming();
    }
    state.counters["median_us"] = perzentil(zeiten, 0.5) / 1e3;
    state.counters["p95_us"] = perzentil(zeiten, 0.95) / 1e3;
    state.counters["rundreisen_pro_satz"]
        = double(rundreisen) / double(state.iterations() * Schritte);
    if (boxen.anzahl() > 0)
        state.SkipWithError(qPrintable(boxen.texte().join(QStringLiteral(" | "))));
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    try {
        QElapsedTimer t;
        t.start();
        const QString datei = testhilfe::neueDatenbank(testhilfe::Engine::SqlCipher);
        auto db = Database::open(datei);
        frame::jahrErzeugen(*db, Jahr, Konten);
        orte().push_back({QStringLiteral("SQLCipher"), datei, db});
        std::printf("SQLCipher: %d Konten erzeugt in %.1f s\n", Konten, ms(t.nsecsElapsed()) / 1e3);

        QString uri = qEnvironmentVariable("ZEP_BENCH_PG_URI");
        if (uri.isEmpty())
            uri = qEnvironmentVariable("ZEP_TEST_PG_URI");
        if (uri.isEmpty()) {
            std::printf("PostgreSQL übersprungen: ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI nicht "
                        "gesetzt.\n");
        } else {
            qputenv("ZEP_TEST_PG_URI", uri.toUtf8());
            t.restart();
            const QString pg = testhilfe::neueDatenbank(testhilfe::Engine::PostgreSql);
            auto pgDb = Database::open(pg);
            frame::jahrErzeugen(*pgDb, Jahr, Konten);
            orte().push_back({QStringLiteral("PostgreSQL"), pg, pgDb});
            std::printf("PostgreSQL: %d Konten erzeugt in %.1f s\n", Konten,
                        ms(t.nsecsElapsed()) / 1e3);
        }
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        testhilfe::dropAll();
        return 1;
    }
    for (const Ort &o : orte()) {
        benchmark::RegisterBenchmark(("Bildschirm_oeffnen/" + o.name).toStdString().c_str(),
                                     oeffnen, &o)
            ->Iterations(3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("BildAb_1000/" + o.name).toStdString().c_str(), bildAb, &o)
            ->Iterations(3)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    orte().clear();
    testhilfe::dropAll();
    return 0;
}
