#include "PostgresDatabase.h"

#include "platform/core/Geheimnisse.h"
#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QRegularExpression>
#include <QMap>
#include <charconv>
#include <cmath>
#include <cstring>
#include <libpq-fe.h>
#include <optional>
#include <vector>

namespace platform::storage {

namespace {

constexpr int AllgemeinerFehler = 3146; // ODBC call failed: PostgreSQL has no numbers

// Type OIDs of pg_type that the cursor distinguishes.
constexpr Oid OidBool = 16;
constexpr Oid OidInt8 = 20;
constexpr Oid OidInt2 = 21;
constexpr Oid OidInt4 = 23;
constexpr Oid OidFloat4 = 700;
constexpr Oid OidFloat8 = 701;
constexpr Oid OidNumeric = 1700;
constexpr Oid OidDate = 1082;

[[noreturn]] void werfen(int nummer, const QString &zusatz = {})
{
    QString text = RuntimeError::standardText(nummer);
    if (!zusatz.isEmpty())
        text += QStringLiteral(" (%1)").arg(zusatz);
    throw RuntimeError(nummer, text);
}

// The first name in double quotes of a server message (relation "x" does not exist).
QString zitierterName(const QString &meldung)
{
    const qsizetype a = meldung.indexOf(QLatin1Char('"'));
    const qsizetype b = a < 0 ? -1 : meldung.indexOf(QLatin1Char('"'), a + 1);
    return b < 0 ? QString() : meldung.mid(a + 1, b - a - 1);
}

// A text of libpq or the server, never with a password in it.
QString libpqText(const char *text)
{
    return geheimnisseMaskieren(QString::fromUtf8(text).trimmed());
}

QByteArray alsText(const QVariant &wert)
{
    switch (wert.typeId()) {
    case QMetaType::Bool:
        return wert.toBool() ? QByteArrayLiteral("-1") : QByteArrayLiteral("0");
    case QMetaType::Double:
    case QMetaType::Float:
        return QByteArray::number(wert.toDouble(), 'g', 17);
    case QMetaType::QDate:
        return wert.toDate().toString(Qt::ISODate).toUtf8();
    case QMetaType::QDateTime:
        return wert.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toUtf8();
    default:
        return wert.toString().toUtf8();
    }
}

// Kinds of the result columns by their type OIDs.
Wertart artVonTyp(Oid typ)
{
    switch (typ) {
    case OidBool:
    case OidInt2:
    case OidInt4:
    case OidInt8:
        return Wertart::Ganzzahl;
    case OidFloat4:
    case OidFloat8:
    case OidNumeric:
        return Wertart::Kommazahl;
    case OidDate:
        return Wertart::Datum;
    default:
        return Wertart::Text;
    }
}

struct Ergebnis
{
    PGresult *res;
    ~Ergebnis() { PQclear(res); }
    PGresult *loslassen() { return std::exchange(res, nullptr); }
};

// Rows a cursor given up early still reads before it cancels the rest instead: a cancel costs
// a connection of its own to the server.
constexpr int RestOhneAbbruch = 512;

} // namespace

// The rows of one query as they arrive, one PGresult per row. Buffered rows are packed as
// (int32 length, -1 for null, then the bytes) per value.
class PostgresCursor final : public Cursor
{
public:
    // Right after the query was sent: reads its first row, so that a failed query throws here.
    PostgresCursor(PostgresDatabase *db, bool inTransaktion)
        : m_db(db)
        , m_conn(db->m_conn)
        , m_inTransaktion(inTransaktion)
    {
        m_db->m_strom = this;
        m_vorgelesen = holen();
    }

    ~PostgresCursor() override
    {
        if (m_db) {
            try {
                aufgeben();
            } catch (...) {
                // Nothing to report: the next statement resets a broken connection.
            }
            loesen();
        }
        PQclear(m_res);
    }

    int spaltenAnzahl() const override { return int(m_arten.size()); }
    QString spaltenName(int spalte) const override { return m_namen.value(spalte); }

    bool next() override
    {
        if (m_vorgelesen) {
            m_vorgelesen = false;
            return m_hatZeile;
        }
        PQclear(m_res);
        m_res = nullptr;
        m_hatZeile = false;
        if (m_db)
            return holen();
        if (m_leseStelle < m_puffer.size()) {
            const char *p = m_puffer.data() + m_leseStelle;
            for (size_t i = 0; i < m_arten.size(); ++i) {
                qint32 laenge;
                std::memcpy(&laenge, p, sizeof laenge);
                p += sizeof laenge;
                m_werte[i] = p;
                m_laengen[i] = laenge;
                if (laenge > 0)
                    p += laenge;
            }
            m_leseStelle = size_t(p - m_puffer.data());
            return m_hatZeile = true;
        }
        if (m_fehler) {
            const RuntimeError fehler = *m_fehler;
            m_fehler.reset();
            throw fehler;
        }
        return false;
    }

    Wertart art(int spalte) const override
    {
        return m_laengen[size_t(spalte)] < 0 ? Wertart::Null : m_arten[size_t(spalte)];
    }
    qint64 ganzzahl(int spalte) const override
    {
        const QByteArrayView t = utf8(spalte);
        if (t == "t")
            return -1;
        if (t == "f")
            return 0;
        qint64 wert = 0;
        const auto [ende, fehler] = std::from_chars(t.begin(), t.end(), wert);
        if (fehler != std::errc() || ende != t.end())
            return std::llround(kommazahl(spalte));
        return wert;
    }
    double kommazahl(int spalte) const override
    {
        const QByteArrayView t = utf8(spalte);
        double wert = 0;
        std::from_chars(t.begin(), t.end(), wert);
        return wert;
    }
    QByteArrayView utf8(int spalte) const override
    {
        const qint32 laenge = m_laengen[size_t(spalte)];
        return laenge <= 0 ? QByteArrayView() : QByteArrayView(m_werte[size_t(spalte)], laenge);
    }

    bool inTransaktion() const { return m_inTransaktion; }

    // Reads the rows still on the way into the buffer and frees the connection. The current
    // row stays valid. An error among those rows is thrown where it stood in the stream.
    void puffern()
    {
        const PGresult *aktuell = m_res;
        const bool vorgelesen = m_vorgelesen;
        m_res = nullptr; // holen() must not clear the row the caller still reads
        try {
            while (m_db && holen()) {
                for (int i = 0; i < spaltenAnzahl(); ++i) {
                    const qint32 laenge = PQgetisnull(m_res, 0, i) ? -1 : PQgetlength(m_res, 0, i);
                    const char *bytes = reinterpret_cast<const char *>(&laenge);
                    m_puffer.insert(m_puffer.end(), bytes, bytes + sizeof laenge);
                    if (laenge > 0) {
                        const char *wert = PQgetvalue(m_res, 0, i);
                        m_puffer.insert(m_puffer.end(), wert, wert + laenge);
                    }
                }
                PQclear(m_res);
                m_res = nullptr;
            }
        } catch (const RuntimeError &e) {
            m_fehler = e;
        }
        m_res = const_cast<PGresult *>(aktuell);
        m_vorgelesen = vorgelesen;
        m_hatZeile = m_res != nullptr;
        if (m_res)
            zeileZeigen();
    }

private:
    // The next row from the connection into m_res; false at the end of the stream, which
    // leaves the connection free. A failed statement throws after its last result was read.
    bool holen()
    {
        for (;;) {
            PGresult *r = PQgetResult(m_conn);
            if (!r) {
                loesen();
                return m_hatZeile = false;
            }
            switch (PQresultStatus(r)) {
            case PGRES_SINGLE_TUPLE:
                spaltenMerken(r);
                m_res = r;
                zeileZeigen();
                return m_hatZeile = true;
            case PGRES_TUPLES_OK:
                spaltenMerken(r);
                PQclear(r);
                break;
            case PGRES_COMMAND_OK:
            case PGRES_EMPTY_QUERY:
                PQclear(r);
                break;
            default: {
                Ergebnis fehler {r};
                while (PGresult *rest = PQgetResult(m_conn))
                    PQclear(rest);
                PostgresDatabase *db = m_db;
                loesen();
                db->fehlerWerfen(fehler.loslassen());
            }
            }
        }
    }

    void spaltenMerken(const PGresult *r)
    {
        if (m_spaltenBekannt)
            return;
        m_spaltenBekannt = true;
        const int n = PQnfields(r);
        for (int i = 0; i < n; ++i) {
            m_namen.append(QString::fromUtf8(PQfname(r, i)));
            m_arten.push_back(artVonTyp(PQftype(r, i)));
        }
        m_werte.assign(size_t(n), nullptr);
        m_laengen.assign(size_t(n), -1);
    }

    void zeileZeigen()
    {
        for (size_t i = 0; i < m_arten.size(); ++i) {
            const int spalte = int(i);
            m_laengen[i] = PQgetisnull(m_res, 0, spalte) ? -1 : PQgetlength(m_res, 0, spalte);
            m_werte[i] = PQgetvalue(m_res, 0, spalte);
        }
    }

    // Gives the stream up: a short rest is read, a long one cancelled unless that would abort
    // the caller's transaction.
    void aufgeben()
    {
        for (int i = 0; m_db && i < RestOhneAbbruch; ++i) {
            PQclear(m_res);
            m_res = nullptr;
            holen();
        }
        if (!m_db)
            return;
        if (!m_inTransaktion) {
            if (PGcancel *abbruch = PQgetCancel(m_conn)) {
                char fehler[256];
                PQcancel(abbruch, fehler, int(sizeof fehler));
                PQfreeCancel(abbruch);
            }
        }
        PQclear(m_res);
        m_res = nullptr;
        while (PGresult *r = PQgetResult(m_conn))
            PQclear(r);
    }

    void loesen()
    {
        if (m_db && m_db->m_strom == this)
            m_db->m_strom = nullptr;
        m_db = nullptr;
    }

    PostgresDatabase *m_db; // null once the stream has left the connection
    PGconn *m_conn;
    bool m_inTransaktion;
    PGresult *m_res = nullptr; // the current row while streaming
    bool m_vorgelesen = false;
    bool m_hatZeile = false;
    bool m_spaltenBekannt = false;
    QStringList m_namen;
    std::vector<Wertart> m_arten;
    std::vector<const char *> m_werte;
    std::vector<qint32> m_laengen;
    std::vector<char> m_puffer;
    size_t m_leseStelle = 0;
    std::optional<RuntimeError> m_fehler;
};

PostgresDatabase::PostgresDatabase(const QString &uri, pg_conn *conn)
    : Database(uri)
    , m_conn(conn)
{ }

PostgresDatabase::~PostgresDatabase()
{
    // A cursor may outlive its connection: it keeps the rest of its rows.
    if (m_strom)
        m_strom->puffern();
    PQfinish(m_conn);
}

namespace {

PostgresDatabase::KennwortAbfrage &kennwortAbfrage()
{
    static PostgresDatabase::KennwortAbfrage a;
    return a;
}

// Passwords typed into the dialog, by address: asked once per process.
QHash<QString, QString> &getippteKennwoerter()
{
    static QHash<QString, QString> k;
    return k;
}

PGconn *verbinden(const QString &uri, const QString &kennwort)
{
    const QByteArray u = uri.toUtf8();
    const QByteArray k = kennwort.toUtf8();
    // An address's own connect_timeout comes later and wins.
    const char *schluessel[] = {"connect_timeout", "dbname", "password", nullptr};
    const char *werte[] = {"10", u.constData(), k.constData(), nullptr};
    if (kennwort.isEmpty())
        schluessel[2] = nullptr;
    return PQconnectdbParams(schluessel, werte, 1);
}

bool enthaeltEines(const QString &text, std::initializer_list<const char *> teile)
{
    for (const char *t : teile) {
        if (text.contains(QString::fromUtf8(t), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

// libpq's message without the "connection to server ... failed:" prefixes, each line once: a
// host tried over IPv6 and IPv4 (or with and without TLS) reports the same fault twice.
QString detail(const QString &meldung)
{
    static const QRegularExpression vorspann(
        QStringLiteral("^(connection to server|Verbindung zum Server).*?(failed|fehlgeschlagen):"
                       "\\s*"));
    QStringList zeilen;
    for (QString z : meldung.split(u'\n', Qt::SkipEmptyParts)) {
        z = z.trimmed().remove(vorspann);
        if (!z.isEmpty() && !zeilen.contains(z))
            zeilen.append(z);
    }
    return zeilen.join(u' ');
}

QString servername(const QString &server)
{
    if (server.isEmpty() || server.startsWith(u'/'))
        return QStringLiteral("auf diesem Rechner");
    return QStringLiteral("\u201E%1\u201C").arg(server);
}

} // namespace

void PostgresDatabase::setKennwortAbfrage(KennwortAbfrage abfrage)
{
    kennwortAbfrage() = std::move(abfrage);
}

RuntimeError PostgresDatabase::verbindungsfehler(const QString &meldung, const QString &benutzer,
                                                 const QString &server, const QString &port)
{
    using namespace fehlernummer;
    const QString wer = QStringLiteral("\u201E%1\u201C").arg(benutzer);
    const QString wo = servername(server);
    int nummer = DatenbankNichtErreichbar;
    QString text;
    if (enthaeltEines(meldung,
                      {"percent-encoded", "Prozent-kodiert", " URI", "IPv6", "connection option",
                       "Verbindungsoption", "port number", "Portnummer", "key/value separator",
                       "Wert-Trennzeichen", "unexpected character", "unerwartetes Zeichen",
                       "missing \"=\"", "could not match", "service file", "Servicedatei",
                       "definition of service"})) {
        nummer = AdresseUngueltig;
        text = QStringLiteral(
            "Die Datenbankadresse ist ungültig. Sie hat die Form "
            "postgresql://benutzer@server:port/datenbank?parameter; Sonderzeichen im Benutzernamen "
            "oder Kennwort werden kodiert geschrieben (% als %25, @ als %40, / als %2F, : als "
            "%3A), eine IPv6-Adresse steht in eckigen Klammern. Bitte prüfen Sie die Adresse.");
    } else if (enthaeltEines(meldung,
                             {"does not match host name", "stimmt nicht mit dem Hostnamen"})) {
        nummer = ZertifikatAbgelehnt;
        text = QStringLiteral("Das Zertifikat des Datenbankservers gilt nicht für den Namen %1, "
                              "unter dem er angesprochen wurde; die Verbindung wurde abgelehnt. "
                              "Bitte verwenden Sie in der Datenbankadresse den Servernamen aus dem "
                              "Zertifikat oder wenden Sie sich an die Datenbankverwaltung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung,
                             {"certificate verify failed", "self-signed certificate",
                              "unable to get local issuer"})) {
        nummer = ZertifikatAbgelehnt;
        text = QStringLiteral("Das Zertifikat des Datenbankservers %1 ist nicht vertrauenswürdig: "
                              "es ist von keiner Stelle unterzeichnet, der die Datenbankadresse "
                              "vertraut (sslrootcert). Die Verbindung wurde nicht aufgebaut. "
                              "Bitte prüfen Sie die Zertifikatsdatei in der Adresse oder wenden "
                              "Sie sich an die Datenbankverwaltung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung, {"root certificate file", "Root-Zertifikat-Datei"})) {
        nummer = ZertifikatAbgelehnt;
        text = QStringLiteral("Die Datei mit dem Stammzertifikat, dem die Datenbankadresse "
                              "vertraut (sslrootcert), fehlt oder ist nicht lesbar. Bitte prüfen "
                              "Sie den Pfad in der Datenbankadresse.");
    } else if (enthaeltEines(meldung, {"does not support SSL", "unterstützt kein SSL"})) {
        nummer = ZertifikatAbgelehnt;
        text = QStringLiteral("Der Datenbankserver %1 bietet keine verschlüsselte Verbindung an, "
                              "die Datenbankadresse verlangt aber eine (sslmode). Bitte wenden Sie "
                              "sich an die Datenbankverwaltung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung, {"alert", "certificate required"})) {
        nummer = ZertifikatAbgelehnt;
        text = QStringLiteral("Der Datenbankserver %1 hat die verschlüsselte Verbindung "
                              "abgelehnt: er erkennt das Zertifikat dieses Arbeitsplatzes nicht "
                              "an (sslcert, sslkey). Bitte wenden Sie sich an die "
                              "Datenbankverwaltung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung,
                             {"could not translate host name", "nicht in Adresse übersetzen"})) {
        nummer = ServerUnbekannt;
        text = QStringLiteral("Der Datenbankserver %1 ist nicht bekannt: der Name lässt sich "
                              "nicht auflösen. Bitte prüfen Sie den Servernamen in der "
                              "Datenbankadresse und die Netzwerkverbindung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung, {"no pg_hba.conf entry", "kein pg_hba.conf-Eintrag"})) {
        nummer = AnmeldungAbgelehnt;
        text = QStringLiteral("Der Datenbankserver %1 lässt den Benutzer %2 von diesem "
                              "Arbeitsplatz aus nicht zu. Bitte wenden Sie sich an die "
                              "Datenbankverwaltung.")
                   .arg(wo, wer);
    } else if (enthaeltEines(meldung,
                             {"authentication failed", "Authentifizierung", "no password supplied",
                              "role \"", "Rolle \u00BB"})) {
        nummer = AnmeldungAbgelehnt;
        text = QStringLiteral("Der Datenbankserver %1 hat die Anmeldung des Benutzers %2 "
                              "abgelehnt: Benutzername oder Kennwort stimmen nicht. Bitte prüfen "
                              "Sie beides (in der Datenbankadresse, in PGPASSWORD oder in der "
                              "Kennwortdatei) oder wenden Sie sich an die Datenbankverwaltung.")
                   .arg(wo, wer);
    } else if (enthaeltEines(meldung, {"database \"", "Datenbank \u00BB"})
               && enthaeltEines(meldung, {"does not exist", "existiert nicht"})) {
        text = QStringLiteral("Die Datenbank gibt es auf dem Datenbankserver %1 nicht. Bitte "
                              "prüfen Sie den Datenbanknamen in der Datenbankadresse.")
                   .arg(wo);
    } else if (enthaeltEines(meldung, {"too many clients", "zu viele Verbindungen"})) {
        text = QStringLiteral("Der Datenbankserver %1 nimmt keine weiteren Verbindungen an. Bitte "
                              "versuchen Sie es später noch einmal oder wenden Sie sich an die "
                              "Datenbankverwaltung.")
                   .arg(wo);
    } else if (enthaeltEines(meldung,
                             {"Is the server running", "Läuft der Server", "Connection refused",
                              "Verbindungsaufbau abgelehnt", "timeout expired",
                              "Timeout abgelaufen", "No route to host",
                              "Network is unreachable"})) {
        nummer = ServerAntwortetNicht;
        text = QStringLiteral("Der Datenbankserver %1 antwortet nicht%2: er läuft nicht, die "
                              "Adresse nennt einen falschen Port, oder eine Firewall sperrt ihn. "
                              "Bitte prüfen Sie Server und Port in der Datenbankadresse oder "
                              "wenden Sie sich an die Datenbankverwaltung.")
                   .arg(wo, port.isEmpty() ? QString() : QStringLiteral(" (Port %1)").arg(port));
    } else {
        text = RuntimeError::standardText(DatenbankNichtErreichbar);
    }
    const QString d = detail(geheimnisseMaskieren(meldung));
    if (!d.isEmpty())
        text += QStringLiteral("\r\n\r\nMeldung des Servers: ") + d;
    return RuntimeError(nummer, text);
}

std::unique_ptr<PostgresDatabase> PostgresDatabase::oeffnen(const QString &uri)
{
    adresseMerken(uri);
    QString kennwort = getippteKennwoerter().value(uri);
    QString grund;
    for (int versuch = 0;; ++versuch) {
        PGconn *conn = verbinden(uri, kennwort);
        if (!conn)
            werfen(fehlernummer::DatenbankNichtErreichbar);
        if (PQstatus(conn) == CONNECTION_OK) {
            if (!kennwort.isEmpty())
                getippteKennwoerter().insert(uri, kennwort);
            std::unique_ptr<PostgresDatabase> db(new PostgresDatabase(uri, conn));
            db->sitzungEinrichten();
            return db;
        }
        const QString meldung = libpqText(PQerrorMessage(conn));
        const QString benutzer = QString::fromUtf8(PQuser(conn));
        const QString server = QString::fromUtf8(PQhost(conn));
        const QString port = QString::fromUtf8(PQport(conn));
        const bool fehlt = PQconnectionNeedsPassword(conn);
        PQfinish(conn);
        const RuntimeError fehler = verbindungsfehler(meldung, benutzer, server, port);
        // A password is asked when none was given, and again when the typed one was refused.
        const bool fragen
            = fehlt || (!kennwort.isEmpty() && fehler.nummer() == fehlernummer::AnmeldungAbgelehnt);
        if (!fragen || !kennwortAbfrage() || versuch >= 3) {
            if (fehlt) {
                throw RuntimeError(
                    fehlernummer::AnmeldungAbgelehnt,
                    QStringLiteral(
                        "Der Datenbankserver %1 verlangt für den Benutzer \u201E%2\u201C "
                        "ein Kennwort, es wurde aber keines angegeben. Bitte geben "
                        "Sie es über die Umgebungsvariable PGPASSWORD, die "
                        "Kennwortdatei ~/.pgpass oder einen Dienstnamen an (siehe "
                        "kontenstamm --help).")
                        .arg(servername(server), benutzer));
            }
            throw fehler;
        }
        const std::optional<QString> getippt = kennwortAbfrage()(benutzer, server, grund);
        if (!getippt) {
            throw RuntimeError(fehlernummer::AnmeldungAbgelehnt,
                               QStringLiteral("Die Anmeldung an der Datenbank wurde "
                                              "abgebrochen."));
        }
        kennwort = *getippt;
        kennwortMerken(kennwort);
        grund = QStringLiteral("Das Kennwort wurde abgelehnt. Bitte geben Sie es noch einmal "
                               "ein.");
    }
}

void PostgresDatabase::sitzungEinrichten()
{
    ++m_roundTrips;
    // A row another session holds is waited for as long as a file waits for another writer.
    const QByteArray sql = "SET client_encoding TO 'UTF8'; SET DateStyle TO 'ISO'; "
                           "SET client_min_messages TO warning; SET lock_timeout TO "
        + QByteArray::number(wartezeit());
    Ergebnis e {PQexec(m_conn, sql.constData())};
    if (PQresultStatus(e.res) != PGRES_COMMAND_OK)
        fehlerWerfen(e.loslassen());
}

void PostgresDatabase::verbindungPruefen()
{
    if (m_strom)
        m_strom->puffern();
    if (PQstatus(m_conn) == CONNECTION_OK)
        return;
    // One attempt per call: after a server restart the screen works again.
    PQreset(m_conn);
    if (PQstatus(m_conn) != CONNECTION_OK)
        werfen(fehlernummer::DatenbankNichtErreichbar, libpqText(PQerrorMessage(m_conn)));
    sitzungEinrichten();
}

QPair<QByteArray, int> PostgresDatabase::platzhalterUmsetzen(const QString &sql)
{
    const QByteArray ein = sql.toUtf8();
    QByteArray aus;
    aus.reserve(ein.size() + 16);
    int n = 0;
    const qsizetype laenge = ein.size();
    qsizetype i = 0;
    const auto kopiereBis = [&](qsizetype ende) {
        aus.append(ein.constData() + i, ende - i);
        i = ende;
    };
    while (i < laenge) {
        const char c = ein[i];
        const char naechstes = i + 1 < laenge ? ein[i + 1] : '\0';
        if (c == '?') {
            aus.append('$').append(QByteArray::number(++n));
            ++i;
        } else if (c == '\'' || c == '"') {
            // Quoted literal or identifier; a doubled quote stays inside. E'' strings also
            // know backslash escapes.
            const bool backslash = c == '\'' && i > 0 && (ein[i - 1] == 'E' || ein[i - 1] == 'e');
            qsizetype j = i + 1;
            while (j < laenge) {
                if (backslash && ein[j] == '\\') {
                    j += 2;
                    continue;
                }
                if (ein[j] == c) {
                    if (j + 1 < laenge && ein[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            kopiereBis(std::min(j + 1, laenge));
        } else if (c == '-' && naechstes == '-') {
            const qsizetype j = ein.indexOf('\n', i);
            kopiereBis(j < 0 ? laenge : j);
        } else if (c == '/' && naechstes == '*') {
            const qsizetype j = ein.indexOf("*/", i + 2);
            kopiereBis(j < 0 ? laenge : j + 2);
        } else if (c == '$') {
            // Dollar quoting: $$...$$ or $tag$...$tag$.
            qsizetype j = i + 1;
            while (j < laenge && (std::isalnum(uchar(ein[j])) || ein[j] == '_'))
                ++j;
            if (j < laenge && ein[j] == '$' && !(j > i + 1 && std::isdigit(uchar(ein[i + 1])))) {
                const QByteArray marke = ein.mid(i, j - i + 1);
                const qsizetype ende = ein.indexOf(marke, j + 1);
                kopiereBis(ende < 0 ? laenge : ende + marke.size());
            } else {
                kopiereBis(j);
            }
        } else {
            aus.append(c);
            ++i;
        }
    }
    return {aus, n};
}

[[noreturn]] void PostgresDatabase::fehlerWerfen(pg_result *res)
{
    Ergebnis e {res};
    const QString sqlstate = QString::fromUtf8(PQresultErrorField(res, PG_DIAG_SQLSTATE));
    QString meldung = libpqText(PQresultErrorField(res, PG_DIAG_MESSAGE_PRIMARY));
    if (meldung.isEmpty())
        meldung = libpqText(PQerrorMessage(m_conn));
    if (PQstatus(m_conn) != CONNECTION_OK || sqlstate.startsWith(QLatin1String("08"))
        || sqlstate.startsWith(QLatin1String("57P"))) {
        werfen(fehlernummer::DatenbankNichtErreichbar, meldung);
    }
    if (sqlstate == QLatin1String("42P01"))
        werfen(fehlernummer::TabelleNichtGefunden, zitierterName(meldung));
    if (sqlstate == QLatin1String("42703"))
        werfen(fehlernummer::FeldNichtGefunden, zitierterName(meldung));
    if (sqlstate == QLatin1String("23505"))
        werfen(fehlernummer::DoppelterSchluessel);
    if (sqlstate == QLatin1String("53100"))
        werfen(fehlernummer::DatentraegerVoll, meldung);
    if (sqlstate == QLatin1String("58030"))
        werfen(fehlernummer::DatentraegerFehler, meldung);
    if (sqlstate == QLatin1String("55P03") || sqlstate == QLatin1String("40P01"))
        werfen(fehlernummer::AndererSchreibt, meldung);
    if (sqlstate == QLatin1String("42501") || sqlstate == QLatin1String("25006")) {
        throw RuntimeError(fehlernummer::KeineBerechtigung,
                           QStringLiteral("Der Datenbankbenutzer \u201E%1\u201C darf das nicht: "
                                          "%2. Bitte wenden Sie sich an die "
                                          "Datenbankverwaltung.")
                               .arg(benutzer(), meldung));
    }
    throw RuntimeError(AllgemeinerFehler, QStringLiteral("[%1] %2").arg(sqlstate, meldung));
}

void PostgresDatabase::senden(const QString &sql, const QVariantList &params, bool zeilenweise)
{
    verbindungPruefen();
    int gesendet = 0;
    if (params.isEmpty()) {
        // Without parameters several statements may share one text (schema scripts).
        gesendet = PQsendQuery(m_conn, sql.toUtf8().constData());
    } else {
        auto it = m_umgesetzt.constFind(sql);
        if (it == m_umgesetzt.cend()) {
            if (m_umgesetzt.size() > 256)
                m_umgesetzt.clear();
            it = m_umgesetzt.insert(sql, platzhalterUmsetzen(sql));
        }
        const auto &[text, anzahl] = *it;
        if (anzahl != params.size()) {
            throw RuntimeError(AllgemeinerFehler,
                               QStringLiteral("Die Anweisung erwartet %1 Parameter, übergeben "
                                              "wurden %2.")
                                   .arg(anzahl)
                                   .arg(params.size()));
        }
        std::vector<QByteArray> werte(params.size());
        std::vector<const char *> zeiger(params.size(), nullptr);
        std::vector<int> laengen(params.size(), 0);
        for (qsizetype k = 0; k < params.size(); ++k) {
            if (params[k].isNull())
                continue;
            werte[k] = alsText(params[k]);
            zeiger[k] = werte[k].constData();
            laengen[k] = int(werte[k].size());
        }
        gesendet = PQsendQueryParams(m_conn, text.constData(), int(params.size()), nullptr,
                                     zeiger.data(), laengen.data(), nullptr, 0);
    }
    ++m_roundTrips;
    if (!gesendet) {
        werfen(fehlernummer::DatenbankNichtErreichbar,
               QString::fromUtf8(PQerrorMessage(m_conn)).trimmed());
    }
    if (zeilenweise)
        PQsetSingleRowMode(m_conn);
}

pg_result *PostgresDatabase::ausfuehren(const QString &sql, const QVariantList &params)
{
    senden(sql, params, false);
    // The last result counts (a script's last statement), or the first error.
    const auto ok = [](const PGresult *r) {
        return PQresultStatus(r) == PGRES_COMMAND_OK || PQresultStatus(r) == PGRES_TUPLES_OK;
    };
    PGresult *res = nullptr;
    while (PGresult *r = PQgetResult(m_conn)) {
        if (res && !ok(res)) {
            PQclear(r);
            continue;
        }
        PQclear(res);
        res = r;
    }
    if (!res) {
        werfen(fehlernummer::DatenbankNichtErreichbar,
               QString::fromUtf8(PQerrorMessage(m_conn)).trimmed());
    }
    if (!ok(res))
        fehlerWerfen(res);
    return res;
}

qint64 PostgresDatabase::execute(const QString &sql, const QVariantList &params)
{
    schemaAenderungBeachten(sql);
    Ergebnis e {ausfuehren(sql, params)};
    const char *anzahl = PQcmdTuples(e.res);
    return anzahl && *anzahl ? QByteArray(anzahl).toLongLong() : 0;
}

std::unique_ptr<Cursor> PostgresDatabase::query(const QString &sql, const QVariantList &params)
{
    const bool inTransaktion = inTransaction();
    senden(sql, params, true);
    return std::make_unique<PostgresCursor>(this, inTransaktion);
}

void PostgresDatabase::begin()
{
    execute(QStringLiteral("BEGIN"));
}

void PostgresDatabase::commit()
{
    execute(QStringLiteral("COMMIT"));
}

void PostgresDatabase::rollback()
{
    execute(QStringLiteral("ROLLBACK"));
}

bool PostgresDatabase::inTransaction() const
{
    // While rows stream the server reports the connection busy, not the block around it.
    if (m_strom)
        return m_strom->inTransaktion();
    const PGTransactionStatusType s = PQtransactionStatus(m_conn);
    return s == PQTRANS_INTRANS || s == PQTRANS_INERROR || s == PQTRANS_ACTIVE;
}

bool PostgresDatabase::hasTable(const QString &tabelle)
{
    return !scalar(QStringLiteral("SELECT 1 FROM information_schema.tables "
                                  "WHERE table_schema = current_schema() "
                                  "AND lower(table_name) = lower(?)"),
                   {tabelle})
                .isNull();
}

namespace {

// Columns and key of the tables of the current schema; the key's array counts from 0.
const QString SqlBeschreibung = QStringLiteral(
    "SELECT c.relname, a.attname, COALESCE(array_position(i.indkey::int2[], a.attnum) "
    "- array_lower(i.indkey::int2[], 1) + 1, 0) "
    "FROM pg_class c "
    "JOIN pg_namespace n ON n.oid = c.relnamespace "
    "JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum > 0 AND NOT a.attisdropped "
    "LEFT JOIN pg_index i ON i.indrelid = c.oid AND i.indisprimary "
    "WHERE n.nspname = current_schema() AND c.relkind IN ('r', 'v', 'p', 'm', 'f') ");

// Rows of (table, column, place in the key) into descriptions by table name in lower case.
QHash<QString, Tabellenbeschreibung> beschreibungenLesen(Cursor &c)
{
    QHash<QString, Tabellenbeschreibung> alle;
    QHash<QString, QMap<qint64, QString>> schluessel;
    while (c.next()) {
        const QString tabelle = QString::fromUtf8(c.utf8(0)).toLower();
        const QString spalte = QString::fromUtf8(c.utf8(1));
        alle[tabelle].spalten.append(spalte);
        if (const qint64 stelle = c.ganzzahl(2); stelle > 0)
            schluessel[tabelle].insert(stelle, spalte);
    }
    for (auto it = schluessel.cbegin(); it != schluessel.cend(); ++it)
        alle[it.key()].schluessel = it->values();
    return alle;
}

} // namespace

Tabellenbeschreibung PostgresDatabase::beschreiben(const QString &tabelle)
{
    auto c = query(SqlBeschreibung
                       + QStringLiteral("AND lower(c.relname) = lower(?) ORDER BY a.attnum"),
                   {tabelle});
    const auto alle = beschreibungenLesen(*c);
    if (alle.isEmpty())
        werfen(fehlernummer::TabelleNichtGefunden, tabelle);
    return alle.cbegin().value();
}

QHash<QString, Tabellenbeschreibung> PostgresDatabase::alleBeschreiben()
{
    auto c = query(SqlBeschreibung + QStringLiteral("ORDER BY c.relname, a.attnum"));
    return beschreibungenLesen(*c);
}

std::optional<Tabellenrechte> PostgresDatabase::rechte(const QString &tabelle)
{
    // pg_class shows every table, also one the user may not touch at all.
    auto c
        = query(QStringLiteral(
                    "SELECT has_schema_privilege(n.oid, 'USAGE') AND "
                    "has_table_privilege(c.oid, 'SELECT'), "
                    "has_table_privilege(c.oid, 'INSERT'), has_table_privilege(c.oid, 'UPDATE'), "
                    "has_table_privilege(c.oid, 'DELETE'), "
                    "current_setting('transaction_read_only') = 'on' "
                    "FROM pg_class c JOIN pg_namespace n ON n.oid = c.relnamespace "
                    "WHERE n.nspname = current_schema() AND lower(c.relname) = lower(?) "
                    "AND c.relkind IN ('r', 'p', 'v')"),
                {tabelle});
    if (!c->next())
        return std::nullopt;
    Tabellenrechte r;
    r.lesen = c->ganzzahl(0) != 0;
    const bool schreiben = r.lesen && c->ganzzahl(4) == 0;
    r.einfuegen = schreiben && c->ganzzahl(1) != 0;
    r.aendern = schreiben && c->ganzzahl(2) != 0;
    r.loeschen = schreiben && c->ganzzahl(3) != 0;
    return r;
}

QString PostgresDatabase::benutzer() const
{
    return QString::fromUtf8(PQuser(m_conn));
}

} // namespace platform::storage
