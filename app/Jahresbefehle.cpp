#include "Jahresbefehle.h"

#include "accounts/Kontentexte.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "jahr/Jahreswechsel.h"
#include "jahr/KontenCsv.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"

#include <QElapsedTimer>
#include <QTextStream>
#include <cstdio>
#include <unistd.h>

using platform::storage::Database;

namespace {

QTextStream &aus()
{
    static QTextStream s(stdout);
    return s;
}

QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

// A progress line on the terminal (nothing when the output goes elsewhere), at most every 100 ms.
jahr::Fortschritt fortschritt(const QString &was)
{
    if (!isatty(STDERR_FILENO))
        return {};
    auto uhr = std::make_shared<QElapsedTimer>();
    uhr->start();
    return [was, uhr](qint64 erledigt, qint64 gesamt) {
        if (erledigt != gesamt && uhr->elapsed() < 100)
            return;
        uhr->restart();
        err() << '\r' << was << ": " << erledigt;
        if (gesamt > 0)
            err() << " / " << gesamt;
        if (erledigt == gesamt)
            err() << '\n';
        err().flush();
    };
}

QString einzeilig(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")).replace(u'\n', u' ');
}

int jahreswechsel(Database &db, const Aufruf &a)
{
    const auto e = jahr::jahreswechsel(db, *a.jahr, *a.nachJahr, a.ohneSchreiben,
                                       fortschritt(QStringLiteral("Konten übernommen")));
    for (const QString &nr : e.neu)
        aus() << (a.ohneSchreiben ? "zu übernehmen: " : "übernommen: ") << nr << '\n';
    for (const auto &abw : e.abweichend) {
        aus() << "abweichende Definitionen bei Konto " << abw.kontoNr << ": "
              << abw.felder.join(QStringLiteral(", ")) << '\n';
    }
    aus() << "Zusammenfassung: " << e.neu.size() << " Konten "
          << (a.ohneSchreiben ? "würden" : "wurden") << " von " << *a.jahr << " nach "
          << *a.nachJahr << " übernommen, " << e.abweichend.size()
          << " Konten haben abweichende Definitionen, " << e.gleich << " sind gleich.\n";
    if (a.ohneSchreiben)
        aus() << "Vorschau: es wurde nichts geschrieben.\n";
    return 0;
}

int pruefen(Database &db, const Aufruf &a)
{
    const auto befunde
        = kontenregeln::jahrPruefen(db, *a.jahr, fortschritt(QStringLiteral("Konten geprüft")));
    QSet<QString> konten;
    for (const auto &b : befunde) {
        konten.insert(b.kontoNr);
        aus() << "Konto " << b.kontoNr << " | Seite " << b.seite << " "
              << kontentexte::Registerseiten[b.seite - 1] << " | Feld " << b.feld << " | "
              << einzeilig(b.meldung) << '\n';
    }
    const qint64 alle = db.scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm "
                                                 "WHERE KontoJJ = ?"),
                                  {*a.jahr})
                            .toLongLong();
    aus() << "Zusammenfassung: " << alle << " Konten des Buchungsjahres " << *a.jahr << " geprüft, "
          << konten.size() << " fehlerhaft (" << befunde.size() << " Befunde).\n";
    return befunde.empty() ? 0 : 1;
}

int exportieren(Database &db, const Aufruf &a)
{
    const auto e = jahr::exportieren(db, *a.jahr, a.datei,
                                     fortschritt(QStringLiteral("Konten geschrieben")));
    if (!e.fehler.isEmpty()) {
        err() << e.fehler << '\n';
        return 2;
    }
    aus() << "Zusammenfassung: " << e.konten << " Konten des Buchungsjahres " << *a.jahr << " nach "
          << a.datei << " geschrieben.\n";
    return 0;
}

int importieren(Database &db, const Aufruf &a)
{
    const auto e = jahr::importieren(db, *a.jahr, a.datei, a.ohneSchreiben,
                                     fortschritt(QStringLiteral("Zeilen geprüft")));
    for (const auto &f : e.fehler) {
        aus() << "Zeile " << f.zeile;
        if (!f.feld.isEmpty())
            aus() << ", Feld " << f.feld;
        aus() << ": " << einzeilig(f.meldung) << '\n';
    }
    aus() << "Zusammenfassung: " << e.konten << " Zeilen gelesen, " << e.fehler.size()
          << " Fehler; ";
    if (e.geschrieben)
        aus() << e.konten << " Konten in das Buchungsjahr " << *a.jahr << " eingefügt.\n";
    else if (a.ohneSchreiben)
        aus() << "Probelauf: nichts geschrieben.\n";
    else
        aus() << "nichts geschrieben.\n";
    return e.fehler.empty() ? 0 : 1;
}

} // namespace

bool istJahreswerkzeug(const Aufruf &a)
{
    return a.art == Aufruf::Art::Jahreswechsel || a.art == Aufruf::Art::Pruefen
        || a.art == Aufruf::Art::Export || a.art == Aufruf::Art::Import;
}

int jahresbefehlAusfuehren(const Aufruf &a)
{
    try {
        auto db = Database::open(a.datenbank);
        int ergebnis = 2;
        switch (a.art) {
        case Aufruf::Art::Jahreswechsel:
            ergebnis = jahreswechsel(*db, a);
            break;
        case Aufruf::Art::Pruefen:
            ergebnis = pruefen(*db, a);
            break;
        case Aufruf::Art::Export:
            ergebnis = exportieren(*db, a);
            break;
        case Aufruf::Art::Import:
            ergebnis = importieren(*db, a);
            break;
        default:
            break;
        }
        aus().flush();
        return ergebnis;
    } catch (const platform::RuntimeError &e) {
        aus().flush();
        err() << "Fehler " << e.nummer() << ": " << e.beschreibung() << Qt::endl;
        return 2;
    }
}
