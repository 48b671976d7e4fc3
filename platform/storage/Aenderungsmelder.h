#pragma once

#include "Database.h"

#include <QObject>
#include <QStringList>
#include <memory>

class QSocketNotifier;
class QTimer;
struct pg_conn;

namespace platform::storage {

// Tells a screen at once when another connection changes an account: on PostgreSQL through
// LISTEN on one connection of its own (the log's triggers send a notification with each
// change); on a file by watching PRAGMA data_version every half second, a read of the file's
// header that costs nothing while nobody writes, and reading the new log entries when it moves.
// Changes made through `db` itself are not reported.
class Aenderungsmelder : public QObject
{
    Q_OBJECT

public:
    explicit Aenderungsmelder(std::shared_ptr<Database> db, QObject *parent = nullptr);
    ~Aenderungsmelder() override;

signals:
    // `felder`: the changed fields; `geloescht`: the account was removed.
    void geaendert(const QString &tabelle, int jahr, const QString &konto, const QString &wer,
                   const QStringList &felder, bool geloescht);

private:
    void pgLesen();
    void dateiPruefen();

    std::shared_ptr<Database> m_db;
    pg_conn *m_pg = nullptr;
    int m_eigenePid = 0;
    QSocketNotifier *m_notifier = nullptr;
    QTimer *m_timer = nullptr;
    qint64 m_version = -1;
    qint64 m_letzteNr = 0;
};

} // namespace platform::storage
