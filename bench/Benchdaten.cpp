#include "Benchdaten.h"

#include "jahr/Demodaten.h"
#include "platform/storage/Schema.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <functional>

namespace benchdaten {

using platform::storage::Database;
using platform::storage::Transaktion;

namespace {

// The demo generator's accounts are copied beyond this many.
constexpr int Vorlage = 5000;
// Numbers of the copies: above every number of the demo generator's first 5,000 accounts.
constexpr int ErsteKopie = 200000;
const QString Tabelle = QStringLiteral("ObjKanzleiKontenstamm");

QString uriMitDatenbank(const QString &basis, const QString &name)
{
    const qsizetype schema = basis.indexOf(QLatin1String("://"));
    const qsizetype pfad = basis.indexOf(QLatin1Char('/'), schema + 3);
    const qsizetype frage = basis.indexOf(QLatin1Char('?'), schema + 3);
    const qsizetype ende = frage < 0 ? basis.size() : frage;
    if (pfad < 0 || (frage >= 0 && pfad > frage))
        return basis.left(ende) + QLatin1Char('/') + name + basis.mid(ende);
    return basis.left(pfad + 1) + name + basis.mid(ende);
}

qint64 kontenImJahr(Database &db, int jahr)
{
    return db
        .scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                {jahr})
        .toLongLong();
}

// Accounts of the next year: nine of ten of the year's (those whose number ends in 0 are
// missing).
qint64 folgejahrKonten(Database &db)
{
    return db
        .scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? "
                               "AND KontoNr NOT LIKE '%0'"),
                {Jahr})
        .toLongLong();
}

bool vollstaendig(Database &db, int konten)
{
    if (!db.hasTable(Tabelle) || kontenImJahr(db, Jahr) != konten)
        return false;
    return kontenImJahr(db, Jahr + 1) == folgejahrKonten(db);
}

QStringList spalten()
{
    QStringList namen;
    for (const auto &s : platform::storage::tabelle(Tabelle)->spalten) {
        if (!s.autoWert)
            namen << s.name;
    }
    return namen;
}

// The rows are copied by the engine itself: a table of the template's numbers with their
// places, a table of copy numbers, one INSERT ... SELECT.
void kopieren(Database &db, int konten, int vorlage)
{
    db.execute(QStringLiteral("CREATE TABLE zep_vorlage (pos INTEGER, nr VARCHAR(6))"));
    db.execute(QStringLiteral("CREATE TABLE zep_kopie (n INTEGER)"));
    QStringList nummern;
    auto c = db.query(QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? "
                                     "ORDER BY KontoNr"),
                      {Jahr});
    while (c->next())
        nummern << QString::fromUtf8(c->utf8(0));
    c.reset();
    const auto inBloecken = [&](const QString &tabelle, int anzahl, int proWert,
                                const std::function<QVariantList(int)> &werte) {
        // 999 parameters at most per statement on older SQLite.
        const int proAnweisung = 900 / proWert;
        for (int anfang = 0; anfang < anzahl; anfang += proAnweisung) {
            QStringList teile;
            QVariantList params;
            for (int i = anfang; i < std::min(anzahl, anfang + proAnweisung); ++i) {
                teile << (proWert == 1 ? QStringLiteral("(?)") : QStringLiteral("(?, ?)"));
                params << werte(i);
            }
            db.execute(QStringLiteral("INSERT INTO %1 VALUES %2").arg(tabelle, teile.join(u',')),
                       params);
        }
    };
    inBloecken(QStringLiteral("zep_vorlage"), int(nummern.size()), 2, [&](int i) {
        return QVariantList {i, nummern[i]};
    });
    const int kopien = (konten - vorlage + vorlage - 1) / vorlage;
    inBloecken(QStringLiteral("zep_kopie"), kopien, 1, [](int i) { return QVariantList {i}; });

    QStringList auswahl;
    for (const QString &s : spalten()) {
        auswahl << (s == QLatin1String("KontoNr")
                        ? QStringLiteral("CAST(%1 + c.n * %2 + v.pos AS VARCHAR(6))")
                              .arg(ErsteKopie)
                              .arg(vorlage)
                        : QStringLiteral("k.") + s);
    }
    db.execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (%1) SELECT %2 "
                              "FROM ObjKanzleiKontenstamm k "
                              "JOIN zep_vorlage v ON v.nr = k.KontoNr CROSS JOIN zep_kopie c "
                              "WHERE k.KontoJJ = ? AND c.n * %3 + v.pos < %4")
                   .arg(spalten().join(QStringLiteral(", ")), auswahl.join(QStringLiteral(", ")))
                   .arg(vorlage)
                   .arg(konten - vorlage),
               {Jahr});
    db.execute(QStringLiteral("DROP TABLE zep_vorlage"));
    db.execute(QStringLiteral("DROP TABLE zep_kopie"));
}

// The next year: nine of ten accounts, one in ten of those with another designation.
void folgejahr(Database &db)
{
    QStringList auswahl;
    for (const QString &s : spalten()) {
        if (s == QLatin1String("KontoJJ"))
            auswahl << QString::number(Jahr + 1);
        else if (s == QLatin1String("KontoBezeichnung"))
            auswahl << QStringLiteral("CASE WHEN KontoNr LIKE '%7' THEN 'Umbenannt' ELSE "
                                      "KontoBezeichnung END");
        else
            auswahl << s;
    }
    // No arg(): the LIKE patterns hold '%'.
    db.execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (") + spalten().join(u',')
                   + QStringLiteral(") SELECT ") + auswahl.join(u',')
                   + QStringLiteral(" FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? AND KontoNr "
                                    "NOT LIKE '%0'"),
               {Jahr});
}

void erzeugen(const QString &ort, Engine e, int konten)
{
    QElapsedTimer uhr;
    uhr.start();
    auto db = Database::openSeparate(ort);
    const int vorlage = std::min(konten, Vorlage);
    jahr::jahrErzeugen(*db, Jahr, vorlage);
    {
        Transaktion tx(*db);
        if (konten > vorlage)
            kopieren(*db, konten, vorlage);
        folgejahr(*db);
        tx.commit();
    }
    if (e == Engine::PostgreSql)
        db->execute(QStringLiteral("ANALYZE"));
    if (kontenImJahr(*db, Jahr) != konten)
        throw std::runtime_error("Die erzeugte Zahl der Konten stimmt nicht.");
    std::printf("%s: %d Konten erzeugt in %.1f s\n", qPrintable(engineName(e)), konten,
                double(uhr.elapsed()) / 1000.0);
    std::fflush(stdout);
}

QString zeileAus(const QString &datei, const QString &schluessel)
{
    QFile f(datei);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray &zeile : f.readAll().split('\n')) {
        if (zeile.startsWith(schluessel.toLatin1()))
            return QString::fromLatin1(zeile.mid(schluessel.size())).trimmed();
    }
    return {};
}

} // namespace

QString pgUri()
{
    const QString uri = qEnvironmentVariable("ZEP_BENCH_PG_URI").trimmed();
    return uri.isEmpty() ? qEnvironmentVariable("ZEP_TEST_PG_URI").trimmed() : uri;
}

std::vector<Engine> engines()
{
    if (pgUri().isEmpty()) {
        std::printf("PostgreSQL übersprungen: ZEP_BENCH_PG_URI / ZEP_TEST_PG_URI nicht gesetzt.\n");
        return {Engine::SqlCipher};
    }
    return {Engine::SqlCipher, Engine::PostgreSql};
}

QString engineName(Engine e)
{
    return e == Engine::SqlCipher ? QStringLiteral("SQLCipher") : QStringLiteral("PostgreSQL");
}

QString datenbank(Engine e, int konten)
{
    if (e == Engine::SqlCipher) {
        QString ordner = qEnvironmentVariable("ZEP_BENCH_DIR");
        if (ordner.isEmpty())
            ordner = QDir::tempPath() + QStringLiteral("/zep-bench");
        QDir().mkpath(ordner);
        const QString ort = ordner + QStringLiteral("/konten-%1.zdb").arg(konten);
        if (QFile::exists(ort)) {
            try {
                if (vollstaendig(*Database::openSeparate(ort), konten))
                    return ort;
            } catch (const std::exception &) { }
            for (const char *endung : {"", "-wal", "-shm"})
                QFile::remove(ort + QLatin1String(endung));
        }
        Database::create(ort);
        erzeugen(ort, e, konten);
        return ort;
    }
    const QString name = QStringLiteral("zep_bench_%1").arg(konten);
    const QString ort = uriMitDatenbank(pgUri(), name);
    auto verwaltung = Database::openSeparate(pgUri());
    if (!verwaltung->scalar(QStringLiteral("SELECT 1 FROM pg_database WHERE datname = ?"), {name})
             .isNull()) {
        try {
            if (vollstaendig(*Database::openSeparate(ort), konten))
                return ort;
        } catch (const std::exception &) { }
        verwaltung->execute(QStringLiteral("DROP DATABASE %1 WITH (FORCE)").arg(name));
    }
    verwaltung->execute(QStringLiteral("CREATE DATABASE %1").arg(name));
    erzeugen(ort, e, konten);
    return ort;
}

qint64 rssBytes()
{
    return zeileAus(QStringLiteral("/proc/self/status"), QStringLiteral("VmRSS:"))
               .section(u' ', 0, 0)
               .toLongLong()
        * 1024;
}

qint64 spitzeBytes()
{
    return zeileAus(QStringLiteral("/proc/self/status"), QStringLiteral("VmHWM:"))
               .section(u' ', 0, 0)
               .toLongLong()
        * 1024;
}

void spitzeZuruecksetzen()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

double quantil(std::vector<double> werte, double p)
{
    if (werte.empty())
        return 0;
    std::sort(werte.begin(), werte.end());
    const auto i = std::min(werte.size() - 1, size_t(p * double(werte.size() - 1) + 0.5));
    return werte[i];
}

double median(std::vector<double> werte)
{
    return quantil(std::move(werte), 0.5);
}

QString last()
{
    QFile f(QStringLiteral("/proc/loadavg"));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLatin1(f.readAll()).section(u' ', 0, 2);
}

} // namespace benchdaten
