// Loading a year's accounts into a Recordset against a bare loop over the same Cursor.
// 50,000 rows shaped like ObjKanzleiKontenstamm, on SQLCipher and, when ZEP_BENCH_PG_URI or
// ZEP_TEST_PG_URI names a database, on PostgreSQL. Targets: at most ~0.5 KB per row and at most
// 1.3 times the bare loop's time. For the file engine it also times opening the file (key
// derivation and the first read), the figure that grows with the cipher's settings, in the
// current format and in the old one (compatibility mode: the file is held open meanwhile, so it
// is not moved).
#include "platform/storage/Database.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"
#include "platform/storage/SqlCipherDatabase.h"

#include <QCoreApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <malloc.h>
#include <map>
#include <unistd.h>

using namespace platform::storage;

namespace {

constexpr int Zeilen = 50000;
const QString Abfrage
    = QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? ORDER BY KontoNr");

QVariant beispielwert(const Spalte &s, int zeile)
{
    if (s.name.compare(QLatin1String("KontoNr"), Qt::CaseInsensitive) == 0)
        return QStringLiteral("%1").arg(zeile, 6, 10, QLatin1Char('0'));
    if (s.name.compare(QLatin1String("KontoJJ"), Qt::CaseInsensitive) == 0)
        return 2003;
    switch (s.typ) {
    case Spaltentyp::Text: {
        const QString text
            = zeile % 3 == 0 ? QString() : QStringLiteral("Sachkonto %1").arg(zeile % 997);
        return s.laenge > 0 ? text.left(s.laenge) : text;
    }
    case Spaltentyp::Ganzzahl16:
    case Spaltentyp::Ganzzahl32:
        return zeile % 13;
    case Spaltentyp::JaNein:
        return zeile % 2 ? -1 : 0;
    case Spaltentyp::Kommazahl:
        return zeile * 0.25;
    case Spaltentyp::Datum:
        return zeile % 10 == 0 ? QVariant(QDate(2003, 1, 1).addDays(zeile % 365)) : QVariant();
    }
    return {};
}

void fuellen(Database &db)
{
    const Tabelle *t = tabelle(QStringLiteral("ObjKanzleiKontenstamm"));
    if (!t)
        throw std::runtime_error("ObjKanzleiKontenstamm fehlt im Katalog");
    db.execute(ddl(*t, db.engine()));
    QStringList namen;
    std::vector<const Spalte *> spalten;
    for (const Spalte &s : t->spalten) {
        if (s.autoWert)
            continue;
        namen.append(s.name);
        spalten.push_back(&s);
    }
    // PostgreSQL: many rows per statement saves round trips; SQLite allows 999 parameters.
    const int proAnweisung = db.engine() == Engine::PostgreSql ? 200 : 1;
    QStringList platzhalter(int(spalten.size()), QStringLiteral("?"));
    const QString eineZeile
        = QLatin1Char('(') + platzhalter.join(QLatin1Char(',')) + QLatin1Char(')');
    Transaktion tx(db);
    for (int anfang = 0; anfang < Zeilen; anfang += proAnweisung) {
        const int n = std::min(proAnweisung, Zeilen - anfang);
        QStringList werteTeile;
        QVariantList params;
        for (int z = anfang; z < anfang + n; ++z) {
            werteTeile.append(eineZeile);
            for (const Spalte *s : spalten)
                params.append(beispielwert(*s, z));
        }
        db.execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (") + namen.join(',')
                       + QStringLiteral(") VALUES ") + werteTeile.join(','),
                   params);
    }
    tx.commit();
}

qint64 rssBytes()
{
    QFile f(QStringLiteral("/proc/self/statm"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> teile = f.readAll().split(' ');
    return teile.size() > 1 ? teile[1].toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

struct Ort
{
    QString name;
    std::shared_ptr<Database> db;
    QString datei; // empty for PostgreSQL
};

std::vector<Ort> &orte()
{
    static std::vector<Ort> o;
    return o;
}

void recordsetLaden(benchmark::State &state, Database *roh)
{
    std::shared_ptr<Database> db;
    for (const Ort &o : orte())
        if (o.db.get() == roh)
            db = o.db;
    for (auto _ : state) {
        Recordset rs(db, Abfrage, {2003});
        benchmark::DoNotOptimize(rs.RecordCount());
    }
    state.SetItemsProcessed(state.iterations() * Zeilen);
}

void cursorSchleife(benchmark::State &state, Database *db)
{
    for (auto _ : state) {
        auto c = db->query(Abfrage, {2003});
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
        benchmark::DoNotOptimize(summe);
    }
    state.SetItemsProcessed(state.iterations() * Zeilen);
}

void dateiOeffnen(benchmark::State &state, const QString &pfad)
{
    for (auto _ : state) {
        auto db = Database::openSeparate(pfad);
        benchmark::DoNotOptimize(db.get());
    }
}

// Keeps the mean real time of every run for the summary.
class Sammler : public benchmark::ConsoleReporter
{
public:
    // Name without the "/min_time:..." suffix -> (real, CPU) milliseconds per iteration.
    std::map<std::string, std::pair<double, double>> zeiten;
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &r : runs) {
            const std::string name = r.benchmark_name();
            zeiten[name.substr(0, name.find("/min_time"))]
                = {r.GetAdjustedRealTime(), r.GetAdjustedCPUTime()};
        }
        ConsoleReporter::ReportRuns(runs);
    }
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);

    QTemporaryDir dir;
    QString version;
    try {
        const QString datei = dir.filePath(QStringLiteral("bench.db"));
        orte().push_back({QStringLiteral("SQLCipher"), Database::create(datei), datei});
        version = orte().front().db->scalar(QStringLiteral("PRAGMA cipher_version")).toString();
        const QString alt = dir.filePath(QStringLiteral("bench-alt.db"));
        orte().push_back(
            {QStringLiteral("SQLCipher 3"),
             SqlCipherDatabase::anlegen(alt, DBPasswort, SqlCipherDatabase::Format::Alt), alt});
        QString uri = qEnvironmentVariable("ZEP_BENCH_PG_URI");
        if (uri.isEmpty())
            uri = qEnvironmentVariable("ZEP_TEST_PG_URI");
        if (uri.isEmpty()) {
            std::printf("PostgreSQL übersprungen: ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI nicht "
                        "gesetzt.\n");
        } else {
            auto pg = Database::open(uri);
            pg->execute(QStringLiteral("DROP TABLE IF EXISTS ObjKanzleiKontenstamm"));
            orte().push_back({QStringLiteral("PostgreSQL"), pg, {}});
        }
        for (const Ort &o : orte()) {
            QElapsedTimer uhr;
            uhr.start();
            fuellen(*o.db);
            std::printf("%s: %d Zeilen in %.1f s angelegt.\n", qPrintable(o.name), Zeilen,
                        uhr.elapsed() / 1000.0);
        }
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Vorbereitung fehlgeschlagen: %s\n", e.what());
        return 1;
    }

    // Memory first, before the timed runs leave freed heap behind.
    std::map<QString, std::pair<double, double>> speicher;
    for (const Ort &o : orte()) {
        // The base includes one run of the query: libpq's result buffers are the engine's,
        // and the heap keeps them for the next query anyway.
        o.db->query(Abfrage, {2003})->next();
        malloc_trim(0);
        const qint64 vorher = rssBytes();
        auto rs = std::make_unique<Recordset>(o.db, Abfrage, QVariantList {2003});
        const qint64 nachher = rssBytes();
        speicher[o.name] = {double(rs->speicherBytes()) / rs->RecordCount(),
                            double(nachher - vorher) / rs->RecordCount()};
    }

    for (const Ort &o : orte()) {
        const std::string n = o.name.toStdString();
        if (!o.datei.isEmpty()) {
            benchmark::RegisterBenchmark(("Datei_oeffnen/" + n).c_str(), dateiOeffnen, o.datei)
                ->Unit(benchmark::kMillisecond)
                ->MinTime(1.0);
        }
        benchmark::RegisterBenchmark(("Recordset_laden/" + n).c_str(), recordsetLaden, o.db.get())
            ->Unit(benchmark::kMillisecond)
            ->MinTime(1.0);
        benchmark::RegisterBenchmark(("Cursor_Schleife/" + n).c_str(), cursorSchleife, o.db.get())
            ->Unit(benchmark::kMillisecond)
            ->MinTime(1.0);
    }
    Sammler sammler;
    benchmark::RunSpecifiedBenchmarks(&sammler);
    benchmark::Shutdown();

    // The machine may be shared: CPU time is the steadier figure, real time is shown too.
    std::printf("\n%-11s %18s %18s %14s %12s %10s\n", "Engine", "Recordset ms", "Cursor ms",
                "Faktor", "Bytes/Zeile", "RSS/Zeile");
    std::printf("%-11s %18s %18s %14s\n", "", "(real / CPU)", "(real / CPU)", "(real / CPU)");
    for (const Ort &o : orte()) {
        const std::string n = o.name.toStdString();
        const auto laden = sammler.zeiten["Recordset_laden/" + n];
        const auto schleife = sammler.zeiten["Cursor_Schleife/" + n];
        const auto faktor = [](double a, double b) {
            return b > 0 ? a / b : 0.0;
        };
        std::printf("%-11s %8.1f / %7.1f %8.1f / %7.1f %6.2f / %5.2f %12.0f %10.0f\n", n.c_str(),
                    laden.first, laden.second, schleife.first, schleife.second,
                    faktor(laden.first, schleife.first), faktor(laden.second, schleife.second),
                    speicher[o.name].first, speicher[o.name].second);
    }
    std::printf("Ziele: Faktor <= 1.3, <= 512 Bytes je Zeile.\n");
    // Opening and a plain scan of 50,000 rows, in the two file formats.
    std::printf("\nSQLCipher %s: Datei öffnen, Durchlauf von %d Zeilen (ms, real / CPU)\n",
                qPrintable(version), Zeilen);
    for (const Ort &o : orte()) {
        if (o.datei.isEmpty())
            continue;
        const std::string n = o.name.toStdString();
        const auto oeffnen = sammler.zeiten["Datei_oeffnen/" + n];
        const auto schleife = sammler.zeiten["Cursor_Schleife/" + n];
        std::printf("  %-28s %7.1f / %6.1f %9.1f / %6.1f\n",
                    o.name == u"SQLCipher" ? "neues Format (SQLCipher 4)"
                                           : "altes Format, Kompatibilität",
                    oeffnen.first, oeffnen.second, schleife.first, schleife.second);
    }
    for (const Ort &o : orte())
        if (o.datei.isEmpty())
            o.db->execute(QStringLiteral("DROP TABLE IF EXISTS ObjKanzleiKontenstamm"));
    return 0;
}
