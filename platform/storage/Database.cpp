#include "Database.h"

#include "Aenderungsprotokoll.h"
#include "PostgresDatabase.h"
#include "SqlCipherDatabase.h"
#include "platform/core/RuntimeError.h"

#include <QDate>
#include <QFileInfo>
#include <QHash>

namespace platform::storage {

namespace {

struct Eintrag
{
    std::weak_ptr<Database> db;
    QString passwort;
};

// One shared connection per database and process: the key derivation of SQLCipher is costly.
QHash<QString, Eintrag> &registry()
{
    static QHash<QString, Eintrag> r;
    return r;
}

QString normalisiert(const QString &ort)
{
    if (Database::istPostgresUri(ort))
        return ort.trimmed();
    const QFileInfo info(ort);
    const QString kanonisch = info.canonicalFilePath();
    return kanonisch.isEmpty() ? info.absoluteFilePath() : kanonisch;
}

// The triggers of the change log call functions every file connection must know.
const bool protokollVorbereitet = (Aenderungsprotokoll::vorbereiten(), true);

std::unique_ptr<Database> oeffnenNeu(const QString &ort, const QString &passwort)
{
    Aenderungsprotokoll::vorbereiten();
    std::unique_ptr<Database> db;
    if (Database::istPostgresUri(ort))
        db = PostgresDatabase::oeffnen(ort.trimmed());
    else
        db = SqlCipherDatabase::oeffnen(ort, passwort);
    Aenderungsprotokoll::einrichten(*db);
    return db;
}

} // namespace

QVariant Cursor::wert(int spalte) const
{
    switch (art(spalte)) {
    case Wertart::Null:
        return {};
    case Wertart::Ganzzahl:
        return QVariant::fromValue<qlonglong>(ganzzahl(spalte));
    case Wertart::Kommazahl:
        return kommazahl(spalte);
    case Wertart::Text:
        return QString::fromUtf8(utf8(spalte));
    case Wertart::Datum: {
        const QString text = QString::fromUtf8(utf8(spalte));
        // A time part ("2003-12-31 00:00:00") is cut off; anything else stays text.
        const QDate datum = QDate::fromString(text.left(10), Qt::ISODate);
        return datum.isValid() ? QVariant(datum) : QVariant(text);
    }
    }
    return {};
}

std::shared_ptr<Database> Database::open(const QString &ort, const QString &passwort)
{
    const QString schluessel = normalisiert(ort);
    auto &r = registry();
    const auto it = r.constFind(schluessel);
    if (it != r.cend()) {
        if (auto db = it->db.lock()) {
            // Another password must still prove itself against the file.
            if (db->engine() == Engine::SqlCipher && it->passwort != passwort)
                oeffnenNeu(ort, passwort);
            return db;
        }
    }
    std::shared_ptr<Database> db = oeffnenNeu(ort, passwort);
    r.insert(schluessel, Eintrag {db, passwort});
    return db;
}

std::unique_ptr<Database> Database::openSeparate(const QString &ort, const QString &passwort)
{
    return oeffnenNeu(ort, passwort);
}

std::unique_ptr<Database> Database::openReadOnly(const QString &ort, const QString &passwort)
{
    if (!istPostgresUri(ort))
        return SqlCipherDatabase::oeffnenNurLesen(ort, passwort);
    // As a connection option, so that it holds after a reconnect, too.
    QString uri = ort.trimmed();
    uri += uri.contains(QLatin1Char('?')) ? QLatin1Char('&') : QLatin1Char('?');
    uri += QLatin1String("options=-c%20default_transaction_read_only%3Don");
    return PostgresDatabase::oeffnen(uri);
}

std::shared_ptr<Database> Database::create(const QString &ort, const QString &passwort)
{
    if (istPostgresUri(ort))
        return open(ort, passwort);
    std::shared_ptr<Database> db = SqlCipherDatabase::anlegen(ort, passwort);
    registry().insert(normalisiert(ort), Eintrag {db, passwort});
    return db;
}

void Database::verschluesseln(const QString &pfad, const QString &passwort)
{
    SqlCipherDatabase::verschluesseln(pfad, passwort);
}

bool Database::istPostgresUri(const QString &ort)
{
    const QString o = ort.trimmed();
    return o.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive)
        || o.startsWith(QLatin1String("postgres://"), Qt::CaseInsensitive);
}

namespace {
int g_wartezeit = 15000;
} // namespace

void Database::setWartezeit(int millisekunden)
{
    g_wartezeit = std::max(0, millisekunden);
}

int Database::wartezeit()
{
    return g_wartezeit;
}

std::shared_ptr<const Tabellenbeschreibung> Database::beschreibung(const QString &tabelle,
                                                                   bool erneuern)
{
    const QString schluessel = tabelle.toLower();
    if (!erneuern && !m_alleBeschrieben) {
        m_alleBeschrieben = true;
        const auto alle = alleBeschreiben();
        for (auto it = alle.cbegin(); it != alle.cend(); ++it)
            m_beschreibungen.insert(it.key(), std::make_shared<const Tabellenbeschreibung>(*it));
    }
    if (!erneuern) {
        const auto it = m_beschreibungen.constFind(schluessel);
        if (it != m_beschreibungen.cend())
            return *it;
    }
    auto b = std::make_shared<const Tabellenbeschreibung>(beschreiben(tabelle));
    m_beschreibungen.insert(schluessel, b);
    return b;
}

void Database::schemaAenderungBeachten(const QString &sql)
{
    if (m_beschreibungen.isEmpty() && !m_alleBeschrieben)
        return;
    const QString anfang = sql.trimmed().left(6);
    if (anfang.startsWith(QLatin1String("ALTER"), Qt::CaseInsensitive)
        || anfang.startsWith(QLatin1String("CREATE"), Qt::CaseInsensitive)
        || anfang.startsWith(QLatin1String("DROP"), Qt::CaseInsensitive)) {
        m_beschreibungen.clear();
        m_alleBeschrieben = false;
    }
}

QVariant Database::scalar(const QString &sql, const QVariantList &params)
{
    auto cursor = query(sql, params);
    if (!cursor->next() || cursor->spaltenAnzahl() == 0)
        return {};
    return cursor->wert(0);
}

Transaktion::Transaktion(Database &db)
    : m_db(db)
{
    m_db.begin();
}

Transaktion::~Transaktion()
{
    if (!m_offen)
        return;
    try {
        if (m_db.inTransaction())
            m_db.rollback();
    } catch (...) {
        // A destructor must not throw; a lost connection has rolled back by itself.
    }
}

void Transaktion::commit()
{
    m_db.commit();
    m_offen = false;
}

} // namespace platform::storage
