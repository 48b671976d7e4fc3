#include "Aenderungsprotokoll.h"

#include "Schema.h"
#include "platform/core/RuntimeError.h"

#include <QCryptographicHash>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSysInfo>
#include <mutex>
#include <sqlite3.h>

#ifndef Q_OS_WIN
#include <pwd.h>
#include <unistd.h>
#endif

namespace platform::storage {

const QString Aenderungsprotokoll::tabelle = QStringLiteral("Aenderungsprotokoll");
const QString Aenderungsprotokoll::kanal = QStringLiteral("zep_kontenstamm");

namespace {

// The logged tables and the columns that name an account in the log.
struct Protokolliert
{
    QString tabelle;
    QString jahrSpalte; // empty: the table has no year
    QString kontoSpalte;
};

const std::vector<Protokolliert> &protokollierteTabellen()
{
    static const std::vector<Protokolliert> t {
        {QStringLiteral("ObjKanzleiKontenstamm"), QStringLiteral("KontoJJ"),
         QStringLiteral("KontoNr")},
        {QStringLiteral("KreditorenKontenstamm"), QString(), QStringLiteral("KrKontoNr")},
    };
    return t;
}

const QString spaltenliste = QStringLiteral(
    "Nr, Zeit, Wer, Arbeitsplatz, Quelle, Tabelle, Jahr, Konto, Feld, Alt, Neu, Hash");

// Version of the triggers; a new one replaces the old triggers at the next open.
const QString triggerName = QStringLiteral("zep_protokoll_v1");

// Advisory lock keys on PostgreSQL: the append of one entry, the set-up.
constexpr qint64 kettenSperre = 73101180;
constexpr qint64 einrichtSperre = 73101181;

// ---- what the hash covers -------------------------------------------------------------------

// Each part as its UTF-8 length, ':' and its bytes, "-" for none: no two different entries give
// the same text.
void teilAnhaengen(QByteArray &puffer, const char *daten, qsizetype laenge, bool fehlt)
{
    if (fehlt) {
        puffer.append('-');
        return;
    }
    puffer.append(QByteArray::number(laenge));
    puffer.append(':');
    puffer.append(daten, laenge);
}

void teilAnhaengen(QByteArray &puffer, const QString &text, bool fehlt = false)
{
    const QByteArray utf8 = text.toUtf8();
    teilAnhaengen(puffer, utf8.constData(), utf8.size(), fehlt);
}

QByteArray sha256Hex(const QByteArray &inhalt)
{
    return QCryptographicHash::hash(inhalt, QCryptographicHash::Sha256).toHex();
}

// ---- the file engine's functions --------------------------------------------------------------

struct Sitzung
{
    QString quelle = protokollquelle::Bildschirm;
};

std::mutex sitzungenSperre;
QHash<sqlite3 *, Sitzung> &sitzungen()
{
    static QHash<sqlite3 *, Sitzung> s;
    return s;
}

QByteArray betriebssystemBenutzer()
{
#ifdef Q_OS_WIN
    return qgetenv("USERNAME");
#else
    if (const passwd *pw = getpwuid(geteuid()))
        return QByteArray(pw->pw_name);
    return qgetenv("USER");
#endif
}

void textErgebnis(sqlite3_context *ctx, const QByteArray &text)
{
    sqlite3_result_text(ctx, text.constData(), int(text.size()), SQLITE_TRANSIENT);
}

void fnHash(sqlite3_context *ctx, int argc, sqlite3_value **argv)
{
    QByteArray puffer;
    puffer.reserve(256);
    for (int i = 0; i < argc; ++i) {
        const bool fehlt = sqlite3_value_type(argv[i]) == SQLITE_NULL;
        const auto *text = reinterpret_cast<const char *>(sqlite3_value_text(argv[i]));
        teilAnhaengen(puffer, text, fehlt ? 0 : sqlite3_value_bytes(argv[i]), fehlt || !text);
    }
    textErgebnis(ctx, sha256Hex(puffer));
}

void fnWer(sqlite3_context *ctx, int, sqlite3_value **)
{
    static const QByteArray wer = betriebssystemBenutzer();
    textErgebnis(ctx, wer);
}

void fnArbeitsplatz(sqlite3_context *ctx, int, sqlite3_value **)
{
    static const QByteArray platz = QSysInfo::machineHostName().toUtf8();
    textErgebnis(ctx, platz);
}

void fnQuelle(sqlite3_context *ctx, int, sqlite3_value **)
{
    QByteArray quelle;
    {
        std::lock_guard<std::mutex> l(sitzungenSperre);
        quelle = sitzungen().value(sqlite3_context_db_handle(ctx)).quelle.toUtf8();
    }
    textErgebnis(ctx, quelle);
}

void fnQuelleSetzen(sqlite3_context *ctx, int, sqlite3_value **argv)
{
    const QString quelle = QString::fromUtf8(
        reinterpret_cast<const char *>(sqlite3_value_text(argv[0])), sqlite3_value_bytes(argv[0]));
    std::lock_guard<std::mutex> l(sitzungenSperre);
    sitzungen()[sqlite3_context_db_handle(ctx)].quelle = quelle;
    sqlite3_result_null(ctx);
}

int funktionenAnmelden(sqlite3 *db, const char **, const void *)
{
    {
        // A handle may be the address of a closed connection's: start afresh.
        std::lock_guard<std::mutex> l(sitzungenSperre);
        sitzungen()[db] = Sitzung {};
    }
    // The triggers call them; a schema that is not trusted may call innocuous functions only.
    const int harmlos = SQLITE_UTF8 | SQLITE_INNOCUOUS;
    sqlite3_create_function(db, "zep_protokoll_hash", 12, harmlos | SQLITE_DETERMINISTIC, nullptr,
                            fnHash, nullptr, nullptr);
    sqlite3_create_function(db, "zep_protokoll_wer", 0, harmlos, nullptr, fnWer, nullptr, nullptr);
    sqlite3_create_function(db, "zep_protokoll_platz", 0, harmlos, nullptr, fnArbeitsplatz, nullptr,
                            nullptr);
    sqlite3_create_function(db, "zep_protokoll_quelle", 0, harmlos, nullptr, fnQuelle, nullptr,
                            nullptr);
    sqlite3_create_function(db, "zep_protokoll_quelle_setzen", 1, SQLITE_UTF8 | SQLITE_DIRECTONLY,
                            nullptr, fnQuelleSetzen, nullptr, nullptr);
    return SQLITE_OK;
}

// ---- set-up -------------------------------------------------------------------------------------

QString sqlText(const QString &s)
{
    QString t = s;
    t.replace(QLatin1Char('\''), QStringLiteral("''"));
    return QLatin1Char('\'') + t + QLatin1Char('\'');
}

// The catalogue's spelling of a column the database reports, or the name as reported.
QString katalogName(const Tabelle *t, const QString &spalte)
{
    const Spalte *s = t ? t->spalte(spalte) : nullptr;
    return s ? s->name : spalte;
}

QString defaultLiteral(const Tabelle *t, const QString &spalte)
{
    const Spalte *s = t ? t->spalte(spalte) : nullptr;
    if (!s || !s->anfangswert.isValid())
        return {};
    if (s->anfangswert.typeId() == QMetaType::QString)
        return sqlText(s->anfangswert.toString());
    if (s->anfangswert.typeId() == QMetaType::Double)
        return QString::number(s->anfangswert.toDouble(), 'g', 17);
    return QString::number(s->anfangswert.toLongLong());
}

const QString tabellenDdlDatei = QStringLiteral(
    "CREATE TABLE IF NOT EXISTS Aenderungsprotokoll (Nr INTEGER PRIMARY KEY, Zeit text NOT NULL, "
    "Wer text, Arbeitsplatz text, Quelle text, Tabelle text NOT NULL, Jahr integer, "
    "Konto text, Feld text NOT NULL, Alt text, Neu text, Hash text NOT NULL)");
const QString tabellenDdlPg = QStringLiteral(
    "CREATE TABLE IF NOT EXISTS Aenderungsprotokoll (Nr bigint PRIMARY KEY, Zeit text NOT NULL, "
    "Wer text, Arbeitsplatz text, Quelle text, Tabelle text NOT NULL, Jahr integer, "
    "Konto text COLLATE \"C\", Feld text NOT NULL, Alt text, Neu text, Hash text NOT NULL)");
const QString indexDdl
    = QStringLiteral("CREATE INDEX IF NOT EXISTS ix_Aenderungsprotokoll_1 ON Aenderungsprotokoll "
                     "(Tabelle, Konto, Jahr)");

enum class Art { Einfuegen, Aendern, Loeschen };

// One trigger of the file engine: one INSERT per column, each guarded by its condition.
QString dateiTrigger(const Protokolliert &p, const QStringList &spalten, Art art)
{
    const Tabelle *kat = storage::tabelle(p.tabelle);
    const QString zeile = art == Art::Loeschen ? QStringLiteral("old") : QStringLiteral("new");
    const QString jahr
        = p.jahrSpalte.isEmpty() ? QStringLiteral("NULL") : zeile + QLatin1Char('.') + p.jahrSpalte;
    const QString konto = QStringLiteral("CAST(%1.%2 AS TEXT)").arg(zeile, p.kontoSpalte);
    const char *endung = art == Art::Einfuegen ? "e" : art == Art::Aendern ? "a" : "l";
    const char *ereignis = art == Art::Einfuegen ? "INSERT"
        : art == Art::Aendern                    ? "UPDATE"
                                                 : "DELETE";
    QString sql = QStringLiteral("CREATE TRIGGER %1_%2_%3 AFTER %4 ON %2 BEGIN\n")
                      .arg(triggerName, p.tabelle, QLatin1String(endung), QLatin1String(ereignis));
    for (const QString &roh : spalten) {
        const QString c = katalogName(kat, roh);
        QString alt = QStringLiteral("NULL");
        QString neu = QStringLiteral("NULL");
        QString bedingung;
        if (art == Art::Einfuegen) {
            neu = QStringLiteral("CAST(new.%1 AS TEXT)").arg(c);
            bedingung = QStringLiteral("new.%1 IS NOT NULL").arg(c);
            const QString d = defaultLiteral(kat, c);
            if (!d.isEmpty())
                bedingung += QStringLiteral(" AND new.%1 IS NOT %2").arg(c, d);
        } else if (art == Art::Aendern) {
            alt = QStringLiteral("CAST(old.%1 AS TEXT)").arg(c);
            neu = QStringLiteral("CAST(new.%1 AS TEXT)").arg(c);
            bedingung = QStringLiteral("old.%1 IS NOT new.%1").arg(c);
        } else {
            alt = QStringLiteral("CAST(old.%1 AS TEXT)").arg(c);
            bedingung = QStringLiteral("old.%1 IS NOT NULL").arg(c);
        }
        sql += QStringLiteral(
                   "INSERT INTO Aenderungsprotokoll (%1) SELECT n, z, w, p, q, t, j, k, f, a, b, "
                   "zep_protokoll_hash(n, z, w, p, q, t, j, k, f, a, b, v) FROM (SELECT "
                   "(SELECT ifnull(max(Nr), 0) + 1 FROM Aenderungsprotokoll) AS n, "
                   "strftime('%Y-%m-%dT%H:%M:%fZ', 'now') AS z, zep_protokoll_wer() AS w, "
                   "zep_protokoll_platz() AS p, zep_protokoll_quelle() AS q, ")
                   .arg(spaltenliste)
            + QStringLiteral("%1 AS t, %2 AS j, %3 AS k, %4 AS f, %5 AS a, %6 AS b, ")
                  .arg(sqlText(p.tabelle), jahr, konto, sqlText(c), alt, neu)
            + QStringLiteral("(SELECT Hash FROM Aenderungsprotokoll ORDER BY Nr DESC LIMIT 1) "
                             "AS v) WHERE ")
            + bedingung + QStringLiteral(";\n");
    }
    return sql + QStringLiteral("END");
}

void dateiEinrichten(Database &db)
{
    // The wanted triggers of the tables that exist, by name.
    QHash<QString, QString> gewollt;
    for (const Protokolliert &p : protokollierteTabellen()) {
        if (!db.hasTable(p.tabelle))
            continue;
        const QStringList spalten = db.columns(p.tabelle);
        for (Art art : {Art::Einfuegen, Art::Aendern, Art::Loeschen}) {
            const QString sql = dateiTrigger(p, spalten, art);
            gewollt.insert(sql.section(QLatin1Char(' '), 2, 2), sql);
        }
    }
    if (gewollt.isEmpty())
        return;
    auto abweichend = [&db, &gewollt] {
        if (!db.hasTable(Aenderungsprotokoll::tabelle))
            return true;
        QHash<QString, QString> vorhanden;
        auto c = db.query(QStringLiteral("SELECT name, sql FROM sqlite_master WHERE type = "
                                         "'trigger' AND name LIKE 'zep_protokoll%'"));
        while (c->next())
            vorhanden.insert(c->wert(0).toString(), c->wert(1).toString());
        return vorhanden != gewollt;
    };
    if (!abweichend())
        return;
    auto anlegen = [&db, &gewollt, &abweichend] {
        // Another program may have done it meanwhile.
        if (!abweichend())
            return;
        db.execute(tabellenDdlDatei);
        db.execute(indexDdl);
        auto c = db.query(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'trigger' "
                                         "AND name LIKE 'zep_protokoll%'"));
        QStringList alte;
        while (c->next())
            alte << c->wert(0).toString();
        c.reset();
        for (const QString &name : alte)
            db.execute(QStringLiteral("DROP TRIGGER ") + name);
        for (const QString &sql : std::as_const(gewollt))
            db.execute(sql);
    };
    if (db.inTransaction()) {
        anlegen();
        return;
    }
    Transaktion tx(db);
    anlegen();
    tx.commit();
}

QString pgFunktionen()
{
    QString teile;
    for (const char *t : {"lfd::text", "zeit", "wer", "platz", "quelle", "TG_ARGV[3]", "jahr::text",
                          "konto", "feld", "a", "n", "vorher"}) {
        if (!teile.isEmpty())
            teile += QStringLiteral(" || ");
        teile += QStringLiteral("zep_protokoll_teil(%1)").arg(QLatin1String(t));
    }
    return QStringLiteral(
               "CREATE OR REPLACE FUNCTION zep_protokoll_teil(t text) RETURNS text "
               "LANGUAGE sql IMMUTABLE AS $f$ SELECT CASE WHEN t IS NULL THEN '-' ELSE "
               "octet_length(convert_to(t, 'UTF8'))::text || ':' || t END $f$;\n"
               "CREATE OR REPLACE FUNCTION %1() RETURNS trigger LANGUAGE plpgsql "
               "SECURITY DEFINER SET search_path FROM CURRENT AS $f$\n"
               "DECLARE\n"
               "  alt jsonb; neu jsonb; zeile jsonb; info jsonb := TG_ARGV[2]::jsonb;\n"
               "  k text; a text; n text; feld text; vorher text; lfd bigint; zeit text;\n"
               "  wer text := session_user; platz text; quelle text; jahr integer; konto text;\n"
               "  h text; felder text := '';\n"
               "BEGIN\n"
               "  IF TG_OP <> 'INSERT' THEN alt := to_jsonb(OLD); END IF;\n"
               "  IF TG_OP <> 'DELETE' THEN neu := to_jsonb(NEW); END IF;\n"
               "  zeile := coalesce(neu, alt);\n"
               "  IF TG_ARGV[0] <> '' THEN jahr := (zeile ->> TG_ARGV[0])::integer; END IF;\n"
               "  konto := zeile ->> TG_ARGV[1];\n"
               "  platz := coalesce(nullif(current_setting('zep.arbeitsplatz', true), ''),\n"
               "                    host(inet_client_addr()), 'lokal');\n"
               "  quelle := coalesce(nullif(current_setting('zep.quelle', true), ''), 'extern');\n"
               "  PERFORM pg_advisory_xact_lock(%2);\n"
               "  SELECT p.nr, p.hash INTO lfd, vorher FROM aenderungsprotokoll p\n"
               "    ORDER BY p.nr DESC LIMIT 1;\n"
               "  lfd := coalesce(lfd, 0);\n"
               "  zeit := to_char(clock_timestamp() AT TIME ZONE 'UTC',\n"
               "                  'YYYY-MM-DD\"T\"HH24:MI:SS.MS\"Z\"');\n"
               // The changed fields in one query: the loop runs once per change, not per column.
               "  FOR k, a, n IN SELECT coalesce(o.key, w.key), o.value, w.value\n"
               "      FROM jsonb_each_text(alt) o FULL JOIN jsonb_each_text(neu) w ON w.key = o.key\n"
               "      WHERE o.value IS DISTINCT FROM w.value LOOP\n"
               "    CONTINUE WHEN TG_OP = 'INSERT' AND n = (info -> k ->> 'd');\n"
               "    feld := coalesce(info -> k ->> 'n', k);\n"
               "    lfd := lfd + 1;\n"
               "    h := encode(sha256(convert_to(%3, 'UTF8')), 'hex');\n"
               "    INSERT INTO aenderungsprotokoll (%4)\n"
               "      VALUES (lfd, zeit, wer, platz, quelle, TG_ARGV[3], jahr, konto, feld, a, n, "
               "h);\n"
               "    vorher := h;\n"
               "    felder := felder || ',' || feld;\n"
               "  END LOOP;\n"
               "  IF felder <> '' THEN\n"
               "    PERFORM pg_notify('%5', TG_ARGV[3] || '|' || coalesce(jahr::text, '') || '|'\n"
               "      || coalesce(konto, '') || '|' || wer || '|' || TG_OP || '|' || "
               "substr(felder, 2));\n"
               "  END IF;\n"
               "  RETURN NULL;\n"
               "END $f$")
        .arg(triggerName)
        .arg(kettenSperre)
        .arg(teile, spaltenliste, Aenderungsprotokoll::kanal);
}

// PostgreSQL folds unquoted names to lower case in ASCII only ("KontoÖnorm" -> "kontoÖnorm").
QString pgName(const QString &name)
{
    QString n = name;
    for (QChar &c : n) {
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + 32);
    }
    return n;
}

QString pgTrigger(const Protokolliert &p)
{
    const Tabelle *kat = storage::tabelle(p.tabelle);
    QJsonObject info;
    if (kat) {
        for (const Spalte &s : kat->spalten) {
            QJsonObject f {{QStringLiteral("n"), s.name}};
            if (s.anfangswert.isValid()) {
                f.insert(QStringLiteral("d"),
                         s.anfangswert.typeId() == QMetaType::QString
                             ? s.anfangswert.toString()
                             : QString::number(s.anfangswert.toDouble(), 'g', 17));
            }
            info.insert(pgName(s.name), f);
        }
    }
    const QString json = QString::fromUtf8(QJsonDocument(info).toJson(QJsonDocument::Compact));
    return QStringLiteral("DROP TRIGGER IF EXISTS zep_protokoll ON %1;\n"
                          "CREATE TRIGGER zep_protokoll AFTER INSERT OR UPDATE OR DELETE ON %1 "
                          "FOR EACH ROW EXECUTE FUNCTION %2(%3, %4, %5, %6)")
        .arg(p.tabelle, triggerName, sqlText(pgName(p.jahrSpalte)), sqlText(pgName(p.kontoSpalte)),
             sqlText(json), sqlText(p.tabelle));
}

void pgEinrichten(Database &db)
{
    QStringList pruefung;
    for (const Protokolliert &p : protokollierteTabellen())
        pruefung << QStringLiteral("to_regclass('%1')").arg(pgName(p.tabelle));
    // One round trip: the session's workstation and what exists.
    auto c = db.query(
        QStringLiteral(
            "SELECT set_config('zep.arbeitsplatz', ?, false), "
            "set_config('zep.quelle', ?, false), "
            "(SELECT count(*) FROM unnest(ARRAY[%1]::regclass[]) r WHERE r IS NOT NULL), "
            "(SELECT count(*) FROM pg_trigger tr JOIN pg_proc f ON f.oid = tr.tgfoid "
            "  WHERE f.proname = '%2' AND tr.tgrelid = ANY (ARRAY[%1]::regclass[])), "
            "(to_regclass('aenderungsprotokoll') IS NOT NULL)::int")
            .arg(pruefung.join(QStringLiteral(", ")), triggerName),
        {QSysInfo::machineHostName(), protokollquelle::Bildschirm});
    if (!c->next())
        return;
    const qint64 tabellen = c->wert(2).toLongLong();
    const qint64 trigger = c->wert(3).toLongLong();
    const bool protokoll = c->wert(4).toLongLong() != 0;
    c.reset();
    if (tabellen == 0 || (trigger == tabellen && protokoll))
        return;
    auto anlegen = [&db] {
        db.execute(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(einrichtSperre));
        db.execute(tabellenDdlPg);
        db.execute(indexDdl);
        db.execute(QStringLiteral("GRANT SELECT ON aenderungsprotokoll TO PUBLIC"));
        db.execute(pgFunktionen());
        for (const Protokolliert &p : protokollierteTabellen()) {
            if (db.hasTable(p.tabelle))
                db.execute(pgTrigger(p));
        }
    };
    if (db.inTransaction()) {
        anlegen();
        return;
    }
    Transaktion tx(db);
    anlegen();
    tx.commit();
}

QString textAus(const Cursor &c, int spalte)
{
    return QString::fromUtf8(c.utf8(spalte));
}

} // namespace

void Aenderungsprotokoll::vorbereiten()
{
    static std::once_flag einmal;
    std::call_once(
        einmal, [] { sqlite3_auto_extension(reinterpret_cast<void (*)()>(&funktionenAnmelden)); });
}

void Aenderungsprotokoll::einrichten(Database &db)
{
    if (db.engine() == Engine::PostgreSql)
        pgEinrichten(db);
    else
        dateiEinrichten(db);
}

void Aenderungsprotokoll::quelleSetzen(Database &db, const QString &quelle)
{
    if (db.engine() == Engine::PostgreSql)
        db.execute(QStringLiteral("SELECT set_config('zep.quelle', ?, false)"), {quelle});
    else
        db.execute(QStringLiteral("SELECT zep_protokoll_quelle_setzen(?)"), {quelle});
}

QString Aenderungsprotokoll::hashBerechnen(const Protokolleintrag &e, const QString &vorher)
{
    QByteArray puffer;
    teilAnhaengen(puffer, QString::number(e.nr));
    teilAnhaengen(puffer, e.zeit);
    teilAnhaengen(puffer, e.wer);
    teilAnhaengen(puffer, e.arbeitsplatz);
    teilAnhaengen(puffer, e.quelle);
    teilAnhaengen(puffer, e.tabelle);
    teilAnhaengen(puffer, e.jahr ? QString::number(*e.jahr) : QString(), !e.jahr);
    teilAnhaengen(puffer, e.konto);
    teilAnhaengen(puffer, e.feld);
    teilAnhaengen(puffer, e.alt.value_or(QString()), !e.alt);
    teilAnhaengen(puffer, e.neu.value_or(QString()), !e.neu);
    teilAnhaengen(puffer, vorher, vorher.isEmpty());
    return QString::fromLatin1(sha256Hex(puffer));
}

Pruefergebnis Aenderungsprotokoll::pruefen(Database &db, const QString &bis,
                                           const std::function<void(qint64)> &fortschritt)
{
    Pruefergebnis ergebnis;
    if (!db.hasTable(tabelle))
        return ergebnis;
    const QByteArray gesucht = bis.trimmed().toLower().toLatin1();
    QByteArray vorher;
    QByteArray puffer;
    qint64 erwartet = 1;
    // In portions, so that a long log never has to fit in memory at once.
    constexpr int portion = 50000;
    for (;;) {
        auto c = db.query(QStringLiteral("SELECT %1 FROM Aenderungsprotokoll WHERE Nr >= ? "
                                         "ORDER BY Nr LIMIT %2")
                              .arg(spaltenliste)
                              .arg(portion),
                          {erwartet});
        int gelesen = 0;
        while (c->next()) {
            ++gelesen;
            ++ergebnis.anzahl;
            const qint64 nr = c->ganzzahl(0);
            if (nr != erwartet) {
                ergebnis.fehlerNr = erwartet;
                ergebnis.meldung = QStringLiteral("Eintrag Nr. %1 fehlt: die Kette ist nach "
                                                  "Eintrag Nr. %2 unterbrochen.")
                                       .arg(erwartet)
                                       .arg(erwartet - 1);
                return ergebnis;
            }
            puffer.clear();
            for (int i = 0; i < 11; ++i) {
                const bool fehlt = c->art(i) == Wertart::Null;
                if (i == 0 || (i == 6 && !fehlt)) {
                    const QByteArray zahl = QByteArray::number(c->ganzzahl(i));
                    teilAnhaengen(puffer, zahl.constData(), zahl.size(), false);
                    continue;
                }
                const QByteArrayView text = fehlt ? QByteArrayView() : c->utf8(i);
                teilAnhaengen(puffer, text.data(), text.size(), fehlt);
            }
            teilAnhaengen(puffer, vorher.constData(), vorher.size(), vorher.isEmpty());
            const QByteArray berechnet = sha256Hex(puffer);
            const QByteArrayView gespeichert = c->utf8(11);
            if (gespeichert != QByteArrayView(berechnet)) {
                ergebnis.fehlerNr = nr;
                ergebnis.meldung = QStringLiteral("Eintrag Nr. %1 passt nicht zur Kette: sein "
                                                  "Inhalt oder sein Hash wurde verändert.")
                                       .arg(nr);
                return ergebnis;
            }
            vorher = berechnet;
            ergebnis.letzterHash = QString::fromLatin1(berechnet);
            if (!gesucht.isEmpty() && berechnet == gesucht)
                ergebnis.bisGefunden = true;
            ++erwartet;
        }
        if (fortschritt)
            fortschritt(ergebnis.anzahl);
        if (gelesen < portion)
            break;
    }
    return ergebnis;
}

std::vector<Protokolleintrag> Aenderungsprotokoll::lesen(Database &db, const QString &tab,
                                                         std::optional<int> jahr,
                                                         const QString &konto, const QString &seit)
{
    std::vector<Protokolleintrag> eintraege;
    if (!db.hasTable(tabelle))
        return eintraege;
    QString sql
        = QStringLiteral("SELECT %1 FROM Aenderungsprotokoll WHERE Tabelle = ?").arg(spaltenliste);
    QVariantList params {tab};
    if (jahr) {
        sql += QStringLiteral(" AND Jahr = ?");
        params << *jahr;
    }
    if (!konto.isEmpty()) {
        sql += QStringLiteral(" AND Konto = ?");
        params << konto;
    }
    if (!seit.isEmpty()) {
        sql += QStringLiteral(" AND Zeit >= ?");
        params << seit;
    }
    sql += QStringLiteral(" ORDER BY Nr DESC");
    auto c = db.query(sql, params);
    while (c->next()) {
        Protokolleintrag e;
        e.nr = c->ganzzahl(0);
        e.zeit = textAus(*c, 1);
        e.wer = textAus(*c, 2);
        e.arbeitsplatz = textAus(*c, 3);
        e.quelle = textAus(*c, 4);
        e.tabelle = textAus(*c, 5);
        if (c->art(6) != Wertart::Null)
            e.jahr = int(c->ganzzahl(6));
        e.konto = textAus(*c, 7);
        e.feld = textAus(*c, 8);
        if (c->art(9) != Wertart::Null)
            e.alt = textAus(*c, 9);
        if (c->art(10) != Wertart::Null)
            e.neu = textAus(*c, 10);
        e.hash = textAus(*c, 11);
        eintraege.push_back(std::move(e));
    }
    return eintraege;
}

Protokollquelle::Protokollquelle(Database &db, const QString &quelle)
    : m_db(db)
{
    Aenderungsprotokoll::quelleSetzen(m_db, quelle);
}

Protokollquelle::~Protokollquelle()
{
    try {
        Aenderungsprotokoll::quelleSetzen(m_db, protokollquelle::Bildschirm);
    } catch (...) { }
}

} // namespace platform::storage
