#include "SqlKonsole.h"

#include "app/Ausgabe.h"
#include "platform/core/Geheimnisse.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/storage/SqlCipherDatabase.h"

#include <QTextStream>
#include <cstdio>
#include <unistd.h>

using platform::storage::Database;
using platform::storage::SqlCipherDatabase;

namespace {

bool ausfuehren(Database &db, const QString &sql)
{
    try {
        auto c = db.query(sql);
        QStringList zeile;
        for (int i = 0; i < c->spaltenAnzahl(); ++i)
            zeile.append(c->spaltenName(i));
        if (!zeile.isEmpty())
            aus() << zeile.join(u'|') << '\n';
        while (c->next()) {
            for (int i = 0; i < c->spaltenAnzahl(); ++i)
                zeile[i] = c->wert(i).toString();
            aus() << zeile.join(u'|') << '\n';
        }
        aus().flush();
        return true;
    } catch (const platform::RuntimeError &e) {
        aus().flush();
        err() << "Fehler " << e.nummer() << ": " << platform::geheimnisseMaskieren(e.beschreibung())
              << Qt::endl;
        return false;
    }
}

// What the administrator is looking at.
QString beschreibung(Database &db)
{
    const auto *datei = dynamic_cast<const SqlCipherDatabase *>(&db);
    if (!datei)
        return QStringLiteral("PostgreSQL, nur lesen");
    QString text = QStringLiteral("SQLCipher %1, ")
                       .arg(db.scalar(QStringLiteral("PRAGMA cipher_version")).toString());
    switch (datei->format()) {
    case SqlCipherDatabase::Format::Aktuell:
        text += QStringLiteral("Datei im aktuellen Format");
        break;
    case SqlCipherDatabase::Format::Alt:
        text += QStringLiteral("Datei im alten Format (SQLCipher 3), wird beim nächsten Öffnen "
                               "durch das Programm umgestellt");
        break;
    case SqlCipherDatabase::Format::Unverschluesselt:
        text += QStringLiteral("unverschlüsselte Datei");
        break;
    }
    return text + QStringLiteral(", nur lesen");
}

} // namespace

int sqlKonsole(const Aufruf &a)
{
    std::unique_ptr<Database> db;
    try {
        db = Database::openReadOnly(a.datenbank);
    } catch (const platform::RuntimeError &e) {
        err() << "Fehler " << e.nummer() << ": " << platform::geheimnisseMaskieren(e.beschreibung())
              << Qt::endl;
        return 2;
    }
    if (!a.anweisung.isEmpty())
        return ausfuehren(*db, a.anweisung) ? 0 : 1;

    // Statements from standard input, each up to a line that ends with ";".
    const bool terminal = isatty(STDIN_FILENO);
    err() << platform::geheimnisseMaskieren(a.datenbank) << ": " << beschreibung(*db) << Qt::endl;
    QTextStream ein(stdin);
    QString anweisung;
    bool allesGut = true;
    for (;;) {
        if (terminal) {
            err() << (anweisung.isEmpty() ? "sql> " : "...> ");
            err().flush();
        }
        QString zeile;
        if (!ein.readLineInto(&zeile))
            break;
        anweisung += zeile + QLatin1Char('\n');
        if (!zeile.trimmed().endsWith(QLatin1Char(';')))
            continue;
        allesGut = ausfuehren(*db, anweisung.trimmed()) && allesGut;
        anweisung.clear();
    }
    if (!anweisung.trimmed().isEmpty())
        allesGut = ausfuehren(*db, anweisung.trimmed()) && allesGut;
    return allesGut ? 0 : 1;
}
