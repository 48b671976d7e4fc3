#include "TestDatenbank.h"

#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <cstdio>

namespace testhilfe {

using platform::storage::Database;

namespace {

Engine g_engine = Engine::SqlCipher;
QStringList g_pgDatenbanken;

QTemporaryDir &dateiVerzeichnis()
{
    static QTemporaryDir *dir = new QTemporaryDir; // kept for the whole process
    return *dir;
}

QString pgBasisUri()
{
    return qEnvironmentVariable("ZEP_TEST_PG_URI").trimmed();
}

const char *pgHinweis()
{
    return "ZEP_TEST_PG_URI ist nicht gesetzt: zuerst den PostgreSQL-Testcluster starten, "
           "z. B. export ZEP_TEST_PG_URI=\"$(scripts/pg-test-cluster start)\"";
}

// The base URI with its database name replaced.
QString uriMitDatenbank(const QString &basis, const QString &name)
{
    const qsizetype schema = basis.indexOf(QLatin1String("://"));
    const qsizetype pfad = basis.indexOf(QLatin1Char('/'), schema + 3);
    const qsizetype frage = basis.indexOf(QLatin1Char('?'), schema + 3);
    if (pfad < 0 || (frage >= 0 && pfad > frage)) {
        const qsizetype ende = frage < 0 ? basis.size() : frage;
        return basis.left(ende) + QLatin1Char('/') + name + basis.mid(ende);
    }
    const qsizetype ende = frage < 0 ? basis.size() : frage;
    return basis.left(pfad + 1) + name + basis.mid(ende);
}

Database &pgVerwaltung()
{
    static std::unique_ptr<Database> db = Database::openSeparate(pgBasisUri());
    return *db;
}

} // namespace

QString neueDatenbank(Engine e)
{
    static int zaehler = 0;
    if (e == Engine::SqlCipher) {
        const QString pfad
            = dateiVerzeichnis().filePath(QStringLiteral("test%1.zkdb").arg(++zaehler));
        Database::create(pfad);
        return pfad;
    }
    if (pgBasisUri().isEmpty()) {
        QTest::qFail(pgHinweis(), __FILE__, __LINE__);
        throw platform::RuntimeError(platform::fehlernummer::DatenbankNichtErreichbar,
                                     QString::fromUtf8(pgHinweis()));
    }
    const QString name = QStringLiteral("zt_%1_%2")
                             .arg(QRandomGenerator::global()->generate64(), 0, 36)
                             .arg(++zaehler);
    pgVerwaltung().execute(QStringLiteral("CREATE DATABASE %1").arg(name));
    g_pgDatenbanken.append(name);
    return uriMitDatenbank(pgBasisUri(), name);
}

QString neueDatenbank()
{
    return neueDatenbank(g_engine);
}

std::shared_ptr<Database> neueDatenbankMitSchema()
{
    auto db = Database::open(neueDatenbank());
    platform::storage::schemaAnlegen(*db);
    return db;
}

void konto(Database &db, const QString &nr, const QString &name, int jahr, const QString &zuweisung)
{
    db.execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                              "KontoBezeichnung) VALUES (?, ?, ?)"),
               {nr, jahr, name});
    if (!zuweisung.isEmpty()) {
        db.execute(QStringLiteral("UPDATE ObjKanzleiKontenstamm SET ") + zuweisung
                       + QStringLiteral(" WHERE KontoNr = ? AND KontoJJ = ?"),
                   {nr, jahr});
    }
}

QString datei(const QString &ordner, const QString &name, const QByteArray &inhalt)
{
    const QString pfad = QDir(ordner).filePath(name);
    QFile f(pfad);
    if (!f.open(QIODevice::WriteOnly) || f.write(inhalt) != inhalt.size())
        qFatal("Testdatei %s nicht schreibbar", qPrintable(pfad));
    return pfad;
}

Engine aktuelleEngine()
{
    return g_engine;
}

QString engineName(Engine e)
{
    return e == Engine::SqlCipher ? QStringLiteral("SQLCipher") : QStringLiteral("PostgreSQL");
}

void dropAll()
{
    if (g_pgDatenbanken.isEmpty())
        return;
    try {
        for (const QString &name : std::as_const(g_pgDatenbanken))
            pgVerwaltung().execute(
                QStringLiteral("DROP DATABASE IF EXISTS %1 WITH (FORCE)").arg(name));
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Testdatenbanken nicht gelöscht: %s\n", e.what());
    }
    g_pgDatenbanken.clear();
}

int fuerAlleEngines(int argc, char **argv,
                    const std::function<std::unique_ptr<QObject>()> &erzeugen)
{
    int ergebnis = 0;
    for (const Engine e : {Engine::SqlCipher, Engine::PostgreSql}) {
        g_engine = e;
        std::printf("********* Engine: %s *********\n", qPrintable(engineName(e)));
        std::fflush(stdout);
        if (e == Engine::PostgreSql && pgBasisUri().isEmpty()) {
            std::fprintf(stderr, "FAIL! PostgreSQL: %s\n", pgHinweis());
            ergebnis = 1;
            continue;
        }
        const std::unique_ptr<QObject> test = erzeugen();
        if (QTest::qExec(test.get(), argc, argv) != 0)
            ergebnis = 1;
    }
    dropAll();
    g_engine = Engine::SqlCipher;
    return ergebnis;
}

} // namespace testhilfe
