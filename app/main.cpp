// kontenstamm: the host program. Turns its command line into the call information and runs the
// component, as the suite's programs do.
#include "Befehlszeile.h"
#include "Jahresbefehle.h"
#include "Protokollbefehle.h"
#include "SqlKonsole.h"
#include "component/zelKontenStamm.h"
#include "jahr/Demodaten.h"
#include "platform/core/Geheimnisse.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/Anmeldung.h"
#include "platform/ui/Fehlerfalle.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>

using platform::RuntimeError;
using platform::storage::Database;

namespace {

QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

QString demoPfad()
{
    const QString ordner = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(ordner);
    return QDir(ordner).filePath(QStringLiteral("demo-kontenstamm.zdb"));
}

// A new database at `ort`: an encrypted file, or the tables in an existing PostgreSQL database.
std::shared_ptr<Database> neueDatenbank(const QString &ort, bool mitDemodaten)
{
    auto db = Database::istPostgresUri(ort) ? Database::open(ort) : Database::create(ort);
    if (mitDemodaten)
        jahr::demoDatenbankAnlegen(*db);
    else
        platform::storage::schemaAnlegen(*db);
    return db;
}

// The help file shipped with the program: installed beside it, else the one of the source tree
// the program was built from.
QString mitgelieferteHilfe()
{
    const QString installiert
        = QDir(QCoreApplication::applicationDirPath())
              .filePath(QStringLiteral("../share/zepKontenStamm/kontenstamm.html"));
    if (QFileInfo::exists(installiert))
        return QFileInfo(installiert).canonicalFilePath();
    return QStringLiteral(ZEP_HILFE_QUELLE);
}

void fehlerAusgeben(const RuntimeError &e)
{
    err() << platform::geheimnisseMaskieren(
        QStringLiteral("Fehler %1: %2").arg(e.nummer()).arg(e.beschreibung()))
          << Qt::endl;
}

int letztesBuchungsjahr(Database &db)
{
    return db.scalar(QStringLiteral("SELECT max(KontoJJ) FROM ObjKanzleiKontenstamm")).toInt();
}

} // namespace

int main(int argc, char **argv)
{
    // The command line comes first: --help, a mistyped option and the tools without a screen
    // must work where there is no display (over ssh, from cron).
    QStringList argumente;
    for (int i = 1; i < argc; ++i) {
        argumente << QString::fromLocal8Bit(argv[i]);
        platform::adresseMerken(argumente.last());
    }
    // A password on the command line stays readable in the process list for as long as the
    // program runs, unless it is wiped from the program's own copy of its arguments.
    platform::protokollSchuetzen();
    if (platform::kennwoerterInArgumentenLoeschen(argc, argv) > 0)
        err() << platform::kennwortAufBefehlszeileWarnung() << Qt::endl;
    QString fehler;
    const auto aufruf = befehlszeileLesen(argumente, fehler);
    if (!aufruf) {
        err() << platform::geheimnisseMaskieren(fehler) << Qt::endl;
        return 2;
    }
    if (aufruf->art == Aufruf::Art::Hilfe) {
        QTextStream(stdout) << befehlszeilenHilfe();
        return 0;
    }
    if (istJahreswerkzeug(*aufruf) || aufruf->art == Aufruf::Art::Init
        || aufruf->art == Aufruf::Art::Demo || aufruf->art == Aufruf::Art::Sql
        || aufruf->art == Aufruf::Art::Protokoll) {
        QCoreApplication app(argc, argv);
        app.setApplicationName(QStringLiteral("zepKontenStamm"));
        app.setOrganizationName(QStringLiteral("zep"));
        Aufruf a = *aufruf;
        if (a.art == Aufruf::Art::Sql)
            return sqlKonsole(a);
        if (a.art == Aufruf::Art::Protokoll) {
            if (a.datenbank.isEmpty())
                a.datenbank = demoPfad();
            return protokollbefehlAusfuehren(a);
        }
        if (istJahreswerkzeug(a)) {
            if (a.datenbank.isEmpty())
                a.datenbank = demoPfad();
            return jahresbefehlAusfuehren(a);
        }
        try {
            auto db = neueDatenbank(a.datenbank, a.art == Aufruf::Art::Demo);
            QTextStream(stdout) << jahr::zusammenfassung(*db) << '\n';
        } catch (const RuntimeError &e) {
            fehlerAusgeben(e);
            return 2;
        }
        return 0;
    }

    platform::Anwendung app(argc, argv);
    app.setApplicationName(QStringLiteral("zepKontenStamm"));
    app.setOrganizationName(QStringLiteral("zep"));
    platform::anmeldungEinrichten();
    Aufruf a = *aufruf;
    if (a.hilfedatei.isEmpty())
        a.hilfedatei = mitgelieferteHilfe();
    try {
        std::shared_ptr<Database> db;
        if (a.datenbank.isEmpty()) {
            a.datenbank = demoPfad();
            db = QFileInfo::exists(a.datenbank) ? Database::open(a.datenbank)
                                                : neueDatenbank(a.datenbank, true);
        } else {
            db = Database::open(a.datenbank);
        }
        // A database this user may not change (read-only medium or folder) is shown, not edited.
        if (db->schreibgeschuetzt())
            a.nurAnzeige = true;
        const int jahr = a.jahr.value_or(letztesBuchungsjahr(*db));
        if (jahr == 0 && !a.jahr) {
            err() << "Die Datenbank enthält noch kein Buchungsjahr; bitte --jahr angeben."
                  << Qt::endl;
            return 2;
        }
        QVariantList info = aufrufInfo(a, jahr);
        zelKontenStamm komponente;
        if (a.art == Aufruf::Art::Kreditoren)
            komponente.KreditorenBildschirm_Aufruf(info);
        else
            komponente.Kontenstamm_Aufruf(info);
    } catch (const RuntimeError &e) {
        fehlerAusgeben(e);
        return 2;
    }
    return 0;
}
