#include "PostgresDatabase.h"

#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <charconv>
#include <cmath>
#include <libpq-fe.h>
#include <malloc.h>
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

constexpr int GrossesErgebnis = 2000;

class PostgresCursor final : public Cursor
{
public:
    explicit PostgresCursor(PGresult *res)
        : m_res(res)
        , m_zeilen(PQntuples(res))
        , m_spalten(PQnfields(res))
    {
        m_arten.reserve(m_spalten);
        for (int i = 0; i < m_spalten; ++i) {
            switch (PQftype(res, i)) {
            case OidBool:
            case OidInt2:
            case OidInt4:
            case OidInt8:
                m_arten.push_back(Wertart::Ganzzahl);
                break;
            case OidFloat4:
            case OidFloat8:
            case OidNumeric:
                m_arten.push_back(Wertart::Kommazahl);
                break;
            case OidDate:
                m_arten.push_back(Wertart::Datum);
                break;
            default:
                m_arten.push_back(Wertart::Text);
            }
        }
    }
    ~PostgresCursor() override
    {
        // libpq keeps a whole result in many small heap blocks; after a year's load the heap
        // would hold on to them. Hand the memory back so a loaded record set costs only its own
        // packed rows.
        const bool gross = PQntuples(m_res) >= GrossesErgebnis;
        PQclear(m_res);
        if (gross)
            malloc_trim(0);
    }

    int spaltenAnzahl() const override { return m_spalten; }
    QString spaltenName(int spalte) const override
    {
        return QString::fromUtf8(PQfname(m_res, spalte));
    }
    bool next() override
    {
        if (m_zeile < m_zeilen)
            ++m_zeile;
        return m_zeile < m_zeilen;
    }
    Wertart art(int spalte) const override
    {
        if (PQgetisnull(m_res, m_zeile, spalte))
            return Wertart::Null;
        return m_arten[spalte];
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
        return QByteArrayView(PQgetvalue(m_res, m_zeile, spalte),
                              PQgetlength(m_res, m_zeile, spalte));
    }

private:
    PGresult *m_res;
    int m_zeilen;
    int m_spalten;
    int m_zeile = -1;
    std::vector<Wertart> m_arten;
};

struct Ergebnis
{
    PGresult *res;
    ~Ergebnis() { PQclear(res); }
    PGresult *loslassen() { return std::exchange(res, nullptr); }
};

} // namespace

PostgresDatabase::PostgresDatabase(const QString &uri, pg_conn *conn)
    : Database(uri)
    , m_conn(conn)
{ }

PostgresDatabase::~PostgresDatabase()
{
    PQfinish(m_conn);
}

std::unique_ptr<PostgresDatabase> PostgresDatabase::oeffnen(const QString &uri)
{
    PGconn *conn = PQconnectdb(uri.toUtf8().constData());
    if (!conn)
        werfen(fehlernummer::DatenbankNichtErreichbar, uri);
    if (PQstatus(conn) != CONNECTION_OK) {
        const QString grund = QString::fromUtf8(PQerrorMessage(conn)).trimmed();
        PQfinish(conn);
        werfen(fehlernummer::DatenbankNichtErreichbar, grund);
    }
    std::unique_ptr<PostgresDatabase> db(new PostgresDatabase(uri, conn));
    db->sitzungEinrichten();
    return db;
}

void PostgresDatabase::sitzungEinrichten()
{
    ++m_roundTrips;
    Ergebnis e {PQexec(m_conn,
                       "SET client_encoding TO 'UTF8'; SET DateStyle TO 'ISO'; "
                       "SET client_min_messages TO warning")};
    if (PQresultStatus(e.res) != PGRES_COMMAND_OK)
        fehlerWerfen(e.loslassen());
}

void PostgresDatabase::verbindungPruefen()
{
    if (PQstatus(m_conn) == CONNECTION_OK)
        return;
    // One attempt per call: after a server restart the screen works again.
    PQreset(m_conn);
    if (PQstatus(m_conn) != CONNECTION_OK) {
        werfen(fehlernummer::DatenbankNichtErreichbar,
               QString::fromUtf8(PQerrorMessage(m_conn)).trimmed());
    }
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
    QString meldung = QString::fromUtf8(PQresultErrorField(res, PG_DIAG_MESSAGE_PRIMARY));
    if (meldung.isEmpty())
        meldung = QString::fromUtf8(PQerrorMessage(m_conn)).trimmed();
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
    throw RuntimeError(AllgemeinerFehler, QStringLiteral("[%1] %2").arg(sqlstate, meldung));
}

pg_result *PostgresDatabase::ausfuehren(const QString &sql, const QVariantList &params)
{
    verbindungPruefen();
    PGresult *res = nullptr;
    if (params.isEmpty()) {
        // Without parameters several statements may share one text (schema scripts).
        ++m_roundTrips;
        res = PQexec(m_conn, sql.toUtf8().constData());
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
        ++m_roundTrips;
        res = PQexecParams(m_conn, text.constData(), int(params.size()), nullptr, zeiger.data(),
                           laengen.data(), nullptr, 0);
    }
    const ExecStatusType status = PQresultStatus(res);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        fehlerWerfen(res);
    return res;
}

qint64 PostgresDatabase::execute(const QString &sql, const QVariantList &params)
{
    Ergebnis e {ausfuehren(sql, params)};
    const char *anzahl = PQcmdTuples(e.res);
    return anzahl && *anzahl ? QByteArray(anzahl).toLongLong() : 0;
}

std::unique_ptr<Cursor> PostgresDatabase::query(const QString &sql, const QVariantList &params)
{
    return std::make_unique<PostgresCursor>(ausfuehren(sql, params));
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

QStringList PostgresDatabase::columns(const QString &tabelle)
{
    QStringList namen;
    auto c = query(QStringLiteral("SELECT column_name FROM information_schema.columns "
                                  "WHERE table_schema = current_schema() "
                                  "AND lower(table_name) = lower(?) ORDER BY ordinal_position"),
                   {tabelle});
    while (c->next())
        namen.append(c->wert(0).toString());
    if (namen.isEmpty() && !hasTable(tabelle))
        werfen(fehlernummer::TabelleNichtGefunden, tabelle);
    return namen;
}

QStringList PostgresDatabase::primaryKey(const QString &tabelle)
{
    if (!hasTable(tabelle))
        werfen(fehlernummer::TabelleNichtGefunden, tabelle);
    QStringList namen;
    auto c = query(
        QStringLiteral("SELECT a.attname FROM pg_index i "
                       "JOIN pg_class c ON c.oid = i.indrelid "
                       "JOIN pg_namespace n ON n.oid = c.relnamespace "
                       "JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = ANY(i.indkey) "
                       "WHERE i.indisprimary AND n.nspname = current_schema() "
                       "AND lower(c.relname) = lower(?) "
                       "ORDER BY array_position(i.indkey::int2[], a.attnum)"),
        {tabelle});
    while (c->next())
        namen.append(c->wert(0).toString());
    return namen;
}

} // namespace platform::storage
