// Several users saving the same accounts at once, through the screens' save path (a data control
// with a bound field): each process adds 1 to a counter field of three shared accounts, again
// and again; a save refused because another process was faster is reloaded and tried again.
// Afterwards every counter must equal the number of saves that went through: a difference is a
// lost update. On the file engine a second run starts all users at once on a file in the old
// format: one of them moves it to the current format while the others wait or work on in
// compatibility mode, and no save may get lost on the way.
//
//   zep_stress [--prozesse 8] [--saves 200] [--engine sqlcipher|postgresql|beide]
//
// PostgreSQL needs ZEP_TEST_PG_URI (a test cluster, see scripts/pg-test-cluster). Exit code 0
// when no update was lost on any engine.
#include "common/TestDatenbank.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/storage/SqlCipherDatabase.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"
#include "stress/Engines.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

using platform::storage::Database;
using platform::storage::Engine;
using platform::storage::SqlCipherDatabase;

namespace {

constexpr int Jahr = 2024;
const QStringList Konten {QStringLiteral("1000"), QStringLiteral("1200"), QStringLiteral("2000")};

// One user: `saves` increments, spread over the accounts. Prints "saves conflicts".
// `versatz` ms times the id delay the start, so that users come while another one moves the file.
int benutzer(const QString &ort, int saves, int id, int versatz)
{
    QThread::msleep(versatz * id);
    platform::MsgBoxProtokoll boxen;
    int konflikte = 0;
    // A refused save is reloaded, as a user answering "Ja" would.
    boxen.setAntwortFunktion([&konflikte, id](const platform::MsgBoxEintrag &e) {
        if (e.titel == u"Gleichzeitige Änderung") {
            ++konflikte;
            return int(platform::vbYes);
        }
        std::fprintf(stderr, "Benutzer %d: %s\n", id, qPrintable(e.text));
        return int(platform::vbOK);
    });
    QWidget fenster;
    auto *dc = new platform::DataControl(&fenster);
    dc->setDatabaseName(ort);
    dc->setRecordSource(QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? "
                                       "ORDER BY KontoNr"),
                        {Jahr});
    auto *zaehler = new QLineEdit(&fenster);
    dc->bind(zaehler, QStringLiteral("KontoVSTKuerz"));
    if (!dc->Refresh())
        return 2;
    int gespeichert = 0;
    int versuche = 0;
    for (int i = 0; i < saves; ++i) {
        const QString nr = Konten[(i + id) % Konten.size()];
        for (;;) {
            if (++versuche > saves * 50)
                return 3; // no progress at all: something is wrong
            if (dc->rs().feld(QStringLiteral("KontoNr")).toString() != nr
                && !dc->rs().FindFirst({{QStringLiteral("KontoNr"), nr}}))
                continue;
            zaehler->setText(QString::number(zaehler->text().toInt() + 1));
            if (dc->UpdateRecord()) {
                ++gespeichert;
                break;
            }
        }
    }
    std::printf("%d %d\n", gespeichert, konflikte);
    return 0;
}

struct Ergebnis
{
    qint64 gespeichert = 0;
    qint64 konflikte = 0;
    qint64 verloren = 0;
    bool ok = true;
};

Ergebnis lauf(Engine engine, bool altesFormat, int prozesse, int saves, const QString &programm)
{
    Ergebnis e;
    QTemporaryDir dir;
    const QString ort
        = altesFormat ? dir.filePath(QStringLiteral("alt.zdb")) : testhilfe::neueDatenbank(engine);
    {
        std::shared_ptr<Database> db = altesFormat
            ? SqlCipherDatabase::anlegen(ort, platform::storage::DBPasswort,
                                         SqlCipherDatabase::Format::Alt)
            : Database::open(ort);
        platform::storage::schemaAnlegen(*db);
        for (const QString &nr : Konten)
            testhilfe::konto(*db, nr, QStringLiteral("Konto ") + nr, Jahr);
    }
    std::vector<std::unique_ptr<QProcess>> laeufe;
    for (int p = 0; p < prozesse; ++p) {
        auto proc = std::make_unique<QProcess>();
        proc->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        proc->start(programm,
                    {QStringLiteral("--benutzer"), ort, QStringLiteral("--saves"),
                     QString::number(saves), QStringLiteral("--id"), QString::number(p),
                     QStringLiteral("--versatz"), altesFormat ? QStringLiteral("300") : "0"});
        laeufe.push_back(std::move(proc));
    }
    for (auto &proc : laeufe) {
        if (!proc->waitForFinished(600000) || proc->exitStatus() != QProcess::NormalExit
            || proc->exitCode() != 0) {
            std::fprintf(stderr, "Ein Benutzerprozess ist gescheitert (Code %d).\n",
                         proc->exitCode());
            e.ok = false;
            continue;
        }
        const QStringList teile
            = QString::fromUtf8(proc->readAllStandardOutput()).trimmed().split(u' ');
        e.gespeichert += teile.value(0).toLongLong();
        e.konflikte += teile.value(1).toLongLong();
    }
    auto db = Database::open(ort);
    const qint64 summe = db->scalar(QStringLiteral("SELECT SUM(KontoVSTKuerz) FROM "
                                                   "ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                                    {Jahr})
                             .toLongLong();
    e.verloren = e.gespeichert - summe;
    if (altesFormat
        && SqlCipherDatabase::oeffnenNurLesen(ort, platform::storage::DBPasswort)->format()
            != SqlCipherDatabase::Format::Aktuell) {
        std::fprintf(stderr, "Die Datei ist nicht umgestellt worden.\n");
        e.ok = false;
    }
    return e;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser p;
    p.addOption({QStringLiteral("prozesse"), QStringLiteral("Anzahl Benutzer"), QStringLiteral("n"),
                 QStringLiteral("8")});
    p.addOption({QStringLiteral("saves"), QStringLiteral("Speichervorgänge je Benutzer"),
                 QStringLiteral("n"), QStringLiteral("200")});
    p.addOption({QStringLiteral("engine"), QStringLiteral("sqlcipher, postgresql oder beide"),
                 QStringLiteral("name"), QStringLiteral("beide")});
    p.addOption({QStringLiteral("benutzer"), QStringLiteral("(intern) ein Benutzer"),
                 QStringLiteral("ort")});
    p.addOption({QStringLiteral("id"), QStringLiteral("(intern)"), QStringLiteral("n"),
                 QStringLiteral("0")});
    p.addOption({QStringLiteral("versatz"), QStringLiteral("(intern)"), QStringLiteral("ms"),
                 QStringLiteral("0")});
    p.process(app);
    const int saves = p.value(QStringLiteral("saves")).toInt();
    if (p.isSet(QStringLiteral("benutzer")))
        return benutzer(p.value(QStringLiteral("benutzer")), saves,
                        p.value(QStringLiteral("id")).toInt(),
                        p.value(QStringLiteral("versatz")).toInt());

    const int prozesse = p.value(QStringLiteral("prozesse")).toInt();
    bool ok = true;
    std::vector<std::pair<Engine, bool>> laeufe;
    for (Engine engine : engines(p.value(QStringLiteral("engine")), ok)) {
        laeufe.push_back({engine, false});
        if (engine == Engine::SqlCipher)
            laeufe.push_back({engine, true});
    }
    for (const auto &[engine, altesFormat] : laeufe) {
        QElapsedTimer t;
        t.start();
        const Ergebnis e
            = lauf(engine, altesFormat, prozesse, saves, QCoreApplication::applicationFilePath());
        std::printf("%s%s: %d Prozesse x %d Speichervorgänge: %lld gespeichert, %lld Konflikte "
                    "gemeldet und neu geladen, %lld verlorene Änderungen (%.1f s)\n",
                    qPrintable(testhilfe::engineName(engine)),
                    altesFormat ? ", Datei im alten Format" : "", prozesse, saves, e.gespeichert,
                    e.konflikte, e.verloren, double(t.elapsed()) / 1000.0);
        ok = ok && e.ok && e.verloren == 0 && e.gespeichert == qint64(prozesse) * saves;
    }
    testhilfe::dropAll();
    return ok ? 0 : 1;
}
