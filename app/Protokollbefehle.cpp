#include "Protokollbefehle.h"

#include "app/Ausgabe.h"
#include "jahr/KontenCsv.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Aenderungsprotokoll.h"

#include <QTextStream>

using platform::storage::Aenderungsprotokoll;
using platform::storage::Database;

namespace {

int pruefen(Database &db, const Aufruf &a)
{
    const auto p = Aenderungsprotokoll::pruefen(db, a.bisHash);
    if (p.fehlerNr != 0) {
        err() << "Das Änderungsprotokoll ist beschädigt: " << p.meldung << '\n';
        if (!p.letzterHash.isEmpty())
            aus() << "Letzter passender Hash: " << p.letzterHash << '\n';
        return 1;
    }
    if (p.anzahl == 0)
        aus() << "Das Änderungsprotokoll ist leer.\n";
    else
        aus() << "Das Änderungsprotokoll ist unversehrt: " << p.anzahl << " Einträge.\n"
              << "Letzter Hash: " << p.letzterHash << '\n';
    if (a.bisHash.isEmpty())
        return 0;
    if (p.bisGefunden) {
        aus() << "Der Hash " << a.bisHash.trimmed() << " ist Teil der unversehrten Kette.\n";
        return 0;
    }
    err() << "Der Hash " << a.bisHash.trimmed()
          << " ist nicht Teil der Kette: Einträge bis zu ihm wurden entfernt oder verändert, "
             "oder er wurde falsch abgeschrieben.\n";
    return 1;
}

int auflisten(Database &db, const Aufruf &a)
{
    const auto eintraege = Aenderungsprotokoll::lesen(db, QStringLiteral("ObjKanzleiKontenstamm"),
                                                      a.jahr, a.konto.trimmed(), a.seit);
    const QString leer = QStringLiteral("(leer)");
    if (a.csv) {
        aus() << "Zeit;Wer;Arbeitsplatz;Quelle;Jahr;Konto;Feld;Alt;Neu\n";
        for (const auto &e : eintraege) {
            const QStringList felder {e.zeit,
                                      e.wer,
                                      e.arbeitsplatz,
                                      e.quelle,
                                      e.jahr ? QString::number(*e.jahr) : QString(),
                                      e.konto,
                                      e.feld,
                                      e.alt.value_or(QString()),
                                      e.neu.value_or(QString())};
            QStringList zeile;
            for (const QString &f : felder)
                zeile << jahr::csvFeld(f);
            aus() << zeile.join(QLatin1Char(';')) << '\n';
        }
        return 0;
    }
    for (const auto &e : eintraege) {
        aus() << e.zeit << " | " << e.wer << " @ " << e.arbeitsplatz << " | " << e.quelle
              << " | Konto " << e.konto << " | " << e.feld << " | " << e.alt.value_or(leer)
              << " -> " << e.neu.value_or(leer) << '\n';
    }
    aus() << eintraege.size() << (eintraege.size() == 1 ? " Änderung" : " Änderungen")
          << " im Buchungsjahr " << *a.jahr << ".\n";
    return 0;
}

} // namespace

int protokollbefehlAusfuehren(const Aufruf &a)
{
    try {
        // Looking never changes the database, not even by setting the log up.
        auto db = Database::openReadOnly(a.datenbank);
        const int ergebnis = a.protokollPruefen ? pruefen(*db, a) : auflisten(*db, a);
        aus().flush();
        err().flush();
        return ergebnis;
    } catch (const platform::RuntimeError &e) {
        aus().flush();
        err() << "Fehler " << e.nummer() << ": " << e.beschreibung() << Qt::endl;
        return 2;
    }
}
