// A process killed (SIGKILL) in the middle of saving: afterwards the database must pass its
// integrity check and every account must be either its old or its new version, never a mix.
// A writer process saves the accounts again and again through the screens' save path, changing
// three fields of a record together; the parent kills it at a random moment, checks, and starts
// the next trial. On the file engine, further processes are killed while they move a file of the
// old format to the current one: afterwards the file must open with every row.
//
//   zep_absturz [--versuche 150] [--umstellungen 40] [--engine sqlcipher|postgresql|beide]
//
// PostgreSQL needs ZEP_TEST_PG_URI. Exit code 0 when every trial found a consistent database.
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
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <cstdio>

using platform::storage::Database;
using platform::storage::Engine;
using platform::storage::SqlCipherDatabase;

namespace {

constexpr int Jahr = 2024;
constexpr int Konten = 20;

// Saves forever: each save writes version n into the designation, the first remark and the
// counter field of one account.
int schreiber(const QString &ort)
{
    platform::MsgBoxProtokoll boxen;
    boxen.setAntwortFunktion([](const platform::MsgBoxEintrag &) { return int(platform::vbYes); });
    QWidget fenster;
    auto *dc = new platform::DataControl(&fenster);
    dc->setDatabaseName(ort);
    dc->setRecordSource(QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? "
                                       "ORDER BY KontoNr"),
                        {Jahr});
    auto *name = new QLineEdit(&fenster);
    auto *anmerkung = new QLineEdit(&fenster);
    auto *zaehler = new QLineEdit(&fenster);
    dc->bind(name, QStringLiteral("KontoBezeichnung"));
    dc->bind(anmerkung, QStringLiteral("KontoAnmerkung1"));
    dc->bind(zaehler, QStringLiteral("KontoVSTKuerz"));
    if (!dc->Refresh())
        return 2;
    std::printf("bereit\n");
    std::fflush(stdout);
    for (;;) {
        const int n = zaehler->text().toInt() + 1;
        const QString v = QStringLiteral("Version %1").arg(n);
        name->setText(v);
        anmerkung->setText(v);
        zaehler->setText(QString::number(n));
        // Every move saves the record left.
        if (!dc->rs().MoveNext() || dc->rs().eof())
            dc->rs().MoveFirst();
    }
}

// Empty when consistent, else what is wrong.
QString pruefen(Database &db, Engine engine)
{
    if (engine == Engine::SqlCipher) {
        const QString ok = db.scalar(QStringLiteral("PRAGMA integrity_check")).toString();
        if (ok != u"ok")
            return QStringLiteral("integrity_check: ") + ok;
    }
    auto c = db.query(QStringLiteral("SELECT KontoNr, KontoBezeichnung, KontoAnmerkung1, "
                                     "KontoVSTKuerz FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                      {Jahr});
    int zeilen = 0;
    while (c->next()) {
        ++zeilen;
        const QString nr = c->wert(0).toString();
        const QString name = c->wert(1).toString();
        const QString anm = c->wert(2).toString();
        const qint64 n = c->ganzzahl(3);
        const QString erwartet
            = n == 0 ? QStringLiteral("Konto ") + nr : QStringLiteral("Version %1").arg(n);
        if (name != erwartet || anm != (n == 0 ? QString() : erwartet))
            return QStringLiteral("Konto %1 gemischt: %2 / %3 / %4").arg(nr, name, anm).arg(n);
    }
    if (zeilen != Konten)
        return QStringLiteral("%1 statt %2 Konten").arg(zeilen).arg(Konten);
    return {};
}

// Opens the file, which moves it when it is in the old format, and waits to be killed.
int umsteller(const QString &ort)
{
    std::printf("bereit\n");
    std::fflush(stdout);
    auto db = Database::open(ort);
    std::printf("fertig\n");
    std::fflush(stdout);
    for (;;)
        QThread::sleep(1);
}

// Every table's row count, and the integrity check. The change log, which the first open adds
// to an older file, is not part of what the file held.
QStringList inhalt(Database &db)
{
    QStringList z {db.scalar(QStringLiteral("PRAGMA integrity_check")).toString()};
    auto c = db.query(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                     "AND name <> 'Aenderungsprotokoll' ORDER BY name"));
    while (c->next())
        z.append(c->wert(0).toString());
    for (qsizetype i = 1; i < z.size(); ++i)
        z[i] += QLatin1Char(' ')
            + db.scalar(QStringLiteral("SELECT count(*) FROM \"%1\"").arg(z[i])).toString();
    return z;
}

// Kills processes moving a copy of the old-format file (with the WAL a killed writer left) at
// random moments; afterwards the file must open with what it held. Returns false on a loss.
bool umstellungenAbbrechen(int versuche)
{
    QTemporaryDir dir;
    const auto kopie = [&](const QString &name) {
        const QString pfad = dir.filePath(name);
        for (const QString &n :
             {pfad, pfad + QStringLiteral("-wal"), pfad + QStringLiteral("-shm"),
              pfad + QStringLiteral(".umstellung"), pfad + QStringLiteral(".vor-umstellung")})
            QFile::remove(n);
        QFile::copy(QStringLiteral(ZEP_ALTDATEI), pfad);
        QFile::copy(QStringLiteral(ZEP_ALTDATEI "-wal"), pfad + QStringLiteral("-wal"));
        return pfad;
    };
    const QStringList erwartet = inhalt(*SqlCipherDatabase::oeffnenNurLesen(
        kopie(QStringLiteral("muster.zdb")), platform::storage::DBPasswort));
    QElapsedTimer uhr;
    uhr.start();
    int neu = 0, sicherungen = 0;
    QString fehler;
    qint64 dauer = 0; // of a move left alone, measured in the first round
    for (int v = -1; v < versuche && fehler.isEmpty(); ++v) {
        const QString ort = kopie(QStringLiteral("alt.zdb"));
        QProcess proc;
        proc.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        proc.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--umsteller"), ort});
        if (!proc.waitForReadyRead(30000)) {
            fehler = QStringLiteral("Umsteller startet nicht");
            break;
        }
        proc.readLine();
        if (v < 0) {
            QElapsedTimer t;
            t.start();
            while (!proc.canReadLine() && proc.waitForReadyRead(30000)) { }
            dauer = t.elapsed();
        } else {
            // Before, during and after the move.
            QThread::msleep(QRandomGenerator::global()->bounded(int(dauer * 13 / 10) + 1));
        }
        ::kill(pid_t(proc.processId()), SIGKILL);
        proc.waitForFinished(30000);
        if (SqlCipherDatabase::oeffnenNurLesen(ort, platform::storage::DBPasswort)->format()
            == SqlCipherDatabase::Format::Aktuell)
            neu += v >= 0;
        sicherungen += QFileInfo::exists(ort + QStringLiteral(".vor-umstellung"));
        // The next program start finishes the move.
        const QStringList ist = inhalt(*Database::openSeparate(ort));
        if (ist != erwartet)
            fehler = QStringLiteral("%1 statt %2").arg(ist.join(u','), erwartet.join(u','));
    }
    std::printf("SQLCipher: %d Umstellungen alter Dateien (je %lld ms) abgebrochen (%d schon "
                "umgestellt, %d Sicherungen liegen geblieben), danach jede vollständig%s%s "
                "(%.1f s)\n",
                versuche, dauer, neu, sicherungen, fehler.isEmpty() ? "" : ": NICHT, ",
                qPrintable(fehler), double(uhr.elapsed()) / 1000.0);
    return fehler.isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QCommandLineParser p;
    p.addOption({QStringLiteral("versuche"), QStringLiteral("Versuche je Datenbank"),
                 QStringLiteral("n"), QStringLiteral("150")});
    p.addOption({QStringLiteral("engine"), QStringLiteral("sqlcipher, postgresql oder beide"),
                 QStringLiteral("name"), QStringLiteral("beide")});
    p.addOption({QStringLiteral("umstellungen"),
                 QStringLiteral("abgebrochene Umstellungen alter Dateien"), QStringLiteral("n"),
                 QStringLiteral("40")});
    p.addOption({QStringLiteral("schreiber"), QStringLiteral("(intern)"), QStringLiteral("ort")});
    p.addOption({QStringLiteral("umsteller"), QStringLiteral("(intern)"), QStringLiteral("ort")});
    p.process(app);
    if (p.isSet(QStringLiteral("schreiber")))
        return schreiber(p.value(QStringLiteral("schreiber")));
    if (p.isSet(QStringLiteral("umsteller")))
        return umsteller(p.value(QStringLiteral("umsteller")));

    const int versuche = p.value(QStringLiteral("versuche")).toInt();
    bool allesGut = true;
    for (Engine engine : engines(p.value(QStringLiteral("engine")), allesGut)) {
        const QString ort = testhilfe::neueDatenbank(engine);
        {
            auto db = Database::open(ort);
            platform::storage::schemaAnlegen(*db);
            for (int i = 0; i < Konten; ++i)
                testhilfe::konto(*db, QString::number(1000 + i),
                                 QStringLiteral("Konto %1").arg(1000 + i), Jahr);
        }
        QElapsedTimer uhr;
        uhr.start();
        int gut = 0;
        QString fehler;
        for (int v = 0; v < versuche && fehler.isEmpty(); ++v) {
            QProcess proc;
            proc.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            proc.start(QCoreApplication::applicationFilePath(),
                       {QStringLiteral("--schreiber"), ort});
            if (!proc.waitForReadyRead(30000)) {
                fehler = QStringLiteral("Schreiber startet nicht");
                break;
            }
            // Somewhere between a few and some hundred saves.
            QThread::msleep(20 + QRandomGenerator::global()->bounded(180));
            ::kill(pid_t(proc.processId()), SIGKILL);
            proc.waitForFinished(30000);
            // A fresh connection, as the next program start would open it.
            auto db = Database::openSeparate(ort);
            fehler = pruefen(*db, engine);
            if (fehler.isEmpty())
                ++gut;
        }
        // The highest version shows that saves were under way when the processes were killed.
        const qint64 saves = Database::openSeparate(ort)
                                 ->scalar(QStringLiteral("SELECT SUM(KontoVSTKuerz) FROM "
                                                         "ObjKanzleiKontenstamm"))
                                 .toLongLong();
        std::printf("%s: %d Prozesse mitten im Speichern abgebrochen (%lld Speichervorgänge "
                    "insgesamt), danach %d mal unversehrt%s%s (%.1f s)\n",
                    qPrintable(testhilfe::engineName(engine)), gut + (fehler.isEmpty() ? 0 : 1),
                    saves, gut, fehler.isEmpty() ? "" : ": ", qPrintable(fehler),
                    double(uhr.elapsed()) / 1000.0);
        allesGut = allesGut && fehler.isEmpty() && gut == versuche && saves > versuche;
        if (engine == Engine::SqlCipher)
            allesGut = umstellungenAbbrechen(p.value(QStringLiteral("umstellungen")).toInt())
                && allesGut;
    }
    testhilfe::dropAll();
    return allesGut ? 0 : 1;
}
