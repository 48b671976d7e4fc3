// A process killed (SIGKILL) in the middle of saving: afterwards the database must pass its
// integrity check and every account must be either its old or its new version, never a mix.
// A writer process saves the accounts again and again through the screens' save path, changing
// three fields of a record together; the parent kills it at a random moment, checks, and starts
// the next trial.
//
//   zep_absturz [--versuche 150] [--engine sqlcipher|postgresql|beide]
//
// PostgreSQL needs ZEP_TEST_PG_URI. Exit code 0 when every trial found a consistent database.
#include "common/TestDatenbank.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"
#include "stress/Engines.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>
#include <csignal>
#include <cstdio>

using platform::storage::Database;
using platform::storage::Engine;

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
    p.addOption({QStringLiteral("schreiber"), QStringLiteral("(intern)"), QStringLiteral("ort")});
    p.process(app);
    if (p.isSet(QStringLiteral("schreiber")))
        return schreiber(p.value(QStringLiteral("schreiber")));

    const int versuche = p.value(QStringLiteral("versuche")).toInt();
    bool allesGut = true;
    for (Engine engine : engines(p.value(QStringLiteral("engine")), allesGut)) {
        const QString ort = testhilfe::neueDatenbank(engine);
        {
            auto db = Database::open(ort);
            platform::storage::schemaAnlegen(*db);
            for (int i = 0; i < Konten; ++i) {
                const QString nr = QString::number(1000 + i);
                db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                                           "KontoBezeichnung, KontoVSTKuerz) VALUES (?, ?, ?, 0)"),
                            {nr, Jahr, QStringLiteral("Konto ") + nr});
            }
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
    }
    testhilfe::dropAll();
    return allesGut ? 0 : 1;
}
