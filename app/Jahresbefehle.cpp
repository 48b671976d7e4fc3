#include "Jahresbefehle.h"

#include "accounts/Kontentexte.h"
#include "accounts/regeln/Feldbeschriftungen.h"
#include "accounts/regeln/Jahrespruefung.h"
#include "app/Ausgabe.h"
#include "jahr/Jahreswechsel.h"
#include "jahr/KontenCsv.h"
#include "platform/core/Geheimnisse.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"

#include <QElapsedTimer>
#include <QTextStream>
#include <cstdio>
#include <unistd.h>

using kontenregeln::anzahl;
using platform::storage::Database;

namespace {

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

QString konten(qint64 n)
{
    return anzahl(n, QStringLiteral("Konto"), QStringLiteral("Konten"));
}

qint64 kontenDesJahres(Database &db, int jahr)
{
    return db
        .scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                {jahr})
        .toLongLong();
}

int jahreswechsel(Database &db, const Aufruf &a)
{
    const auto e
        = jahr::jahreswechsel(db, *a.jahr, *a.nachJahr, a.ohneSchreiben,
                              fortschritt(a.ohneSchreiben ? QStringLiteral("Konten verglichen")
                                                          : QStringLiteral("Konten übernommen")));
    for (const QString &nr : e.neu)
        aus() << (a.ohneSchreiben ? "zu übernehmen: " : "übernommen: ") << nr << '\n';
    for (const auto &abw : e.abweichend) {
        aus() << "abweichende Definitionen bei Konto " << abw.kontoNr << ": "
              << abw.felder.join(QStringLiteral(", ")) << '\n';
    }
    const bool eines = e.neu.size() == 1;
    aus() << "Zusammenfassung: " << konten(e.neu.size()) << ' '
          << (a.ohneSchreiben ? (eines ? "würde" : "würden") : (eines ? "wurde" : "wurden"))
          << " von " << *a.jahr << " nach " << *a.nachJahr << " übernommen, "
          << konten(qint64(e.abweichend.size())) << (e.abweichend.size() == 1 ? " hat" : " haben")
          << " abweichende Definitionen, " << e.gleich << (e.gleich == 1 ? " ist" : " sind")
          << " gleich.\n";
    if (a.ohneSchreiben)
        aus() << "Vorschau: es wurde nichts geschrieben.\n";
    return 0;
}

int pruefen(Database &db, const Aufruf &a)
{
    const auto befunde
        = kontenregeln::jahrPruefen(db, *a.jahr, fortschritt(QStringLiteral("Konten geprüft")));
    QSet<QString> fehlerhaft;
    for (const auto &b : befunde) {
        fehlerhaft.insert(b.kontoNr);
        aus() << "Konto " << b.kontoNr << " | Seite " << b.seite << " "
              << kontentexte::Registerseiten[b.seite - 1] << " | Feld "
              << kontenregeln::feldBeschriftung(b.feld) << " | " << einzeilig(b.meldung) << '\n';
    }
    aus() << "Zusammenfassung: " << konten(kontenDesJahres(db, *a.jahr)) << " des Buchungsjahres "
          << *a.jahr << " geprüft, " << fehlerhaft.size() << " fehlerhaft ("
          << anzahl(qint64(befunde.size()), QStringLiteral("Befund"), QStringLiteral("Befunde"))
          << ").\n";
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
    aus() << "Zusammenfassung: " << konten(e.konten) << " des Buchungsjahres " << *a.jahr
          << " nach " << a.datei << " geschrieben.\n";
    return 0;
}

int importieren(Database &db, const Aufruf &a)
{
    const auto e = jahr::importieren(db, *a.jahr, a.datei, a.ohneSchreiben,
                                     fortschritt(QStringLiteral("Zeilen geprüft")));
    for (const auto &f : e.fehler) {
        // Line 0: the file as a whole.
        if (f.zeile > 0)
            aus() << "Zeile " << f.zeile << (f.feld.isEmpty() ? "" : ", Feld ") << f.feld << ": ";
        aus() << einzeilig(f.meldung) << '\n';
    }
    aus() << "Zusammenfassung: "
          << anzahl(e.konten, QStringLiteral("Zeile"), QStringLiteral("Zeilen")) << " gelesen, "
          << e.fehler.size() << " Fehler; ";
    if (e.geschrieben)
        aus() << konten(e.konten) << " in das Buchungsjahr " << *a.jahr << " eingefügt.\n";
    else if (a.ohneSchreiben)
        aus() << "Probelauf: nichts geschrieben.\n";
    else
        aus() << "nichts geschrieben.\n";
    return e.fehler.empty() ? 0 : 1;
}

// A year without accounts is most often a mistyped year: the tools that read it say so instead
// of reporting that all went well (and export writes no empty file over an existing one).
bool leeresJahr(Database &db, const Aufruf &a)
{
    if (a.art == Aufruf::Art::Import || kontenDesJahres(db, *a.jahr) > 0)
        return false;
    const char *folge = a.art == Aufruf::Art::Pruefen ? "es wurde nichts geprüft"
        : a.art == Aufruf::Art::Export                ? "es wurde keine Datei geschrieben"
                                                      : "es wurde nichts übernommen";
    err() << "Das Buchungsjahr " << *a.jahr << " enthält keine Konten; " << folge << ".\n";
    return true;
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
        if (leeresJahr(*db, a)) {
            err().flush();
            return 1;
        }
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
        err() << "Fehler " << e.nummer() << ": " << platform::geheimnisseMaskieren(e.beschreibung())
              << Qt::endl;
        return 2;
    }
}
