// The change log's cost: saving one changed account through the record set with and without
// the log's triggers (p95 of single saves, on SQLCipher and, when ZEP_BENCH_PG_URI or
// ZEP_TEST_PG_URI names a test cluster, on PostgreSQL), and the chain check over 1,000,000
// entries of a file database.
#include "common/TestDatenbank.h"
#include "platform/storage/Aenderungsprotokoll.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <vector>

using namespace platform::storage;

namespace {

constexpr int Eintraege = 1000000;

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
    int n = 0;
    for (auto _ : state) {
        QElapsedTimer t;
        t.start();
        rs.Edit();
        rs.setFeld(QStringLiteral("KontoBezeichnung"), QStringLiteral("Bank %1").arg(++n));
        rs.Update();
        zeiten.push_back(t.nsecsElapsed());
    }
    std::sort(zeiten.begin(), zeiten.end());
    state.counters["p50_ms"] = double(zeiten[zeiten.size() / 2]) / 1e6;
    state.counters["p95_ms"] = double(zeiten[zeiten.size() * 95 / 100]) / 1e6;
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
    for (auto _ : state)
        p = Aenderungsprotokoll::pruefen(*o->db);
    if (p.fehlerNr != 0)
        state.SkipWithError(qPrintable(p.meldung));
    state.counters["eintraege"] = double(p.anzahl);
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
    speicherOrte.clear();
    kette.db.reset();
    testhilfe::dropAll();
    return 0;
}
