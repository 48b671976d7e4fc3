#pragma once

#include "platform/storage/Database.h"

#include <QObject>
#include <QString>
#include <QTest>
#include <functional>
#include <memory>

// Test support: a fresh, empty database per test on either engine, and a main() that runs
// one test class against both engines.
namespace testhilfe {

using platform::storage::Engine;

// A new empty database (no tables) and its location: an encrypted file (password DBPasswort)
// in a temporary directory kept for the process, or a new database on the PostgreSQL test
// cluster named by ZEP_TEST_PG_URI, as a URI. Without that variable the test fails with a
// hint to start the cluster.
QString neueDatenbank(Engine e);
// neueDatenbank() for the engine of the current run.
QString neueDatenbank();

// The engine of the current ZEP_ENGINE_TEST_MAIN run (SQLCipher outside of it).
Engine aktuelleEngine();
QString engineName(Engine e);

// Drops the PostgreSQL databases made by neueDatenbank (best effort).
void dropAll();

// A new database of the current engine with every table of the catalogue, opened.
std::shared_ptr<platform::storage::Database> neueDatenbankMitSchema();

// Adds account `nr` of `jahr` with the initial values of its columns, then applies
// `zuweisung` ("KontoTypus = 2, KontoUstKtoNr = '1000'") to it.
void konto(platform::storage::Database &db, const QString &nr, const QString &name, int jahr,
           const QString &zuweisung = {});

// Writes `inhalt` to the file `name` in the folder `ordner`; its path.
QString datei(const QString &ordner, const QString &name, const QByteArray &inhalt);

// Runs the test object made by `erzeugen` once per engine; non-zero if any run failed.
int fuerAlleEngines(int argc, char **argv,
                    const std::function<std::unique_ptr<QObject>()> &erzeugen);

} // namespace testhilfe

#if defined(QT_WIDGETS_LIB)
#include <QApplication>
#define ZEP_TEST_APPLICATION QApplication
#elif defined(QT_GUI_LIB)
#include <QGuiApplication>
#define ZEP_TEST_APPLICATION QGuiApplication
#else
#include <QCoreApplication>
#define ZEP_TEST_APPLICATION QCoreApplication
#endif

// main() for a test class that runs against SQLCipher and PostgreSQL; a fresh object per engine.
#define ZEP_ENGINE_TEST_MAIN(Klasse)                                                               \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        ZEP_TEST_APPLICATION app(argc, argv);                                                      \
        return testhilfe::fuerAlleEngines(argc, argv, [] { return std::make_unique<Klasse>(); });  \
    }
