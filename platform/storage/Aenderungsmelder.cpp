#include "Aenderungsmelder.h"

#include "Aenderungsprotokoll.h"

#include <QHash>
#include <QSocketNotifier>
#include <QTimer>
#include <libpq-fe.h>
#include <map>
#include <tuple>

namespace platform::storage {

namespace {

// Half a second: a change shows within the two seconds a user waits at most, and an idle screen
// reads the file's header twice a second, nothing more.
constexpr int dateiTakt = 500;

} // namespace

Aenderungsmelder::Aenderungsmelder(std::shared_ptr<Database> db, QObject *parent)
    : QObject(parent)
    , m_db(std::move(db))
{
    if (m_db->engine() == Engine::PostgreSql) {
        m_eigenePid = m_db->scalar(QStringLiteral("SELECT pg_backend_pid()")).toInt();
        m_pg = PQconnectdb(m_db->ort().toUtf8().constData());
        if (PQstatus(m_pg) != CONNECTION_OK) {
            // Without the notice the screen still works; the save's conflict check stays.
            PQfinish(std::exchange(m_pg, nullptr));
            return;
        }
        PQclear(PQexec(m_pg, ("LISTEN " + Aenderungsprotokoll::kanal.toUtf8()).constData()));
        m_notifier = new QSocketNotifier(PQsocket(m_pg), QSocketNotifier::Read, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &Aenderungsmelder::pgLesen);
        return;
    }
    dateiPruefen();
    m_timer = new QTimer(this);
    m_timer->setInterval(dateiTakt);
    connect(m_timer, &QTimer::timeout, this, &Aenderungsmelder::dateiPruefen);
    m_timer->start();
}

Aenderungsmelder::~Aenderungsmelder()
{
    if (m_pg)
        PQfinish(m_pg);
}

void Aenderungsmelder::pgLesen()
{
    if (!PQconsumeInput(m_pg)) {
        // The connection is gone: no more notices, the screen goes on without them.
        m_notifier->setEnabled(false);
        return;
    }
    while (PGnotify *n = PQnotifies(m_pg)) {
        const QStringList teile = QString::fromUtf8(n->extra).split(QLatin1Char('|'));
        const bool eigene = n->be_pid == m_eigenePid;
        PQfreemem(n);
        if (eigene || teile.size() < 6)
            continue;
        emit geaendert(teile[0], teile[1].toInt(), teile[2], teile[3],
                       teile[5].split(QLatin1Char(',')), teile[4] == QLatin1String("DELETE"));
    }
}

void Aenderungsmelder::dateiPruefen()
{
    try {
        if (!m_db->hasTable(Aenderungsprotokoll::tabelle))
            return;
        // One statement, one snapshot: the version and the last entry agree.
        auto stand = m_db->query(QStringLiteral(
            "SELECT v.data_version, (SELECT ifnull(max(Nr), 0) FROM Aenderungsprotokoll) "
            "FROM pragma_data_version() v"));
        if (!stand->next())
            return;
        const qint64 version = stand->ganzzahl(0);
        const qint64 letzte = stand->ganzzahl(1);
        stand.reset();
        if (version == m_version) {
            // Only this connection wrote since the last look: nothing to tell.
            m_letzteNr = letzte;
            return;
        }
        m_version = version;
        auto c = m_db->query(QStringLiteral("SELECT Nr, Tabelle, Jahr, Konto, Wer, Feld, Neu "
                                            "FROM Aenderungsprotokoll WHERE Nr > ? ORDER BY Nr"),
                             {m_letzteNr});
        struct Meldung
        {
            QString wer;
            QStringList felder;
            bool geloescht = false;
        };
        std::map<std::tuple<QString, int, QString>, Meldung> meldungen;
        while (c->next()) {
            m_letzteNr = c->ganzzahl(0);
            auto &m = meldungen[{c->wert(1).toString(), c->wert(2).toInt(), c->wert(3).toString()}];
            m.wer = c->wert(4).toString();
            const QString feld = c->wert(5).toString();
            if (!m.felder.contains(feld))
                m.felder << feld;
            if (c->art(6) == Wertart::Null
                && (feld == QLatin1String("KontoNr") || feld == QLatin1String("KrKontoNr")))
                m.geloescht = true;
        }
        c.reset();
        for (const auto &[schluessel, m] : meldungen)
            emit geaendert(std::get<0>(schluessel), std::get<1>(schluessel),
                           std::get<2>(schluessel), m.wer, m.felder, m.geloescht);
    } catch (const std::exception &) {
        // A busy or vanished file: the next tick tries again.
    }
}

} // namespace platform::storage
