#pragma once

#include <QString>
#include <QStringList>
#include <QVariantList>

namespace platform::storage {
class Database;
}

// How the data controls of a screen are connected to the session's database.
namespace frame {

// "Access 2000;" stays as it is; every other value becomes "Access;".
QString normalisierteVerbindungsArt(const QVariant &wert);

// The connect prefix alone: "Access 2000;" or "Access;", normalising slot 4 of `aufrufInfo` (or
// `verbindungsArt` for the document import) in place.
QString verbindungsPraefix(QVariantList &aufrufInfo, QString &verbindungsArt,
                           const QString &aktuellesProgramm);

// The connect string a data control receives: the normalised prefix (slot 4 of the call
// information, or `verbindungsArt` when the component runs for the document import), then
// "pwd=", the password and ";". Normalises slot 4 of `aufrufInfo` (or `verbindungsArt`) in place,
// as the session copy is changed too.
QString datenSteuerungConnect(QVariantList &aufrufInfo, QString &verbindungsArt,
                              const QString &aktuellesProgramm, const QString &passwort);

// The English box of the password setter: "The following error has occured." ...
QString passwortFehlerText(int nummer, const QString &beschreibung);
inline const QString passwortFehlerTitel = QStringLiteral("An Error has Occured!");

// What the session's user may do with the tables a screen works on.
enum class Zugang { Schreiben, NurLesen, Keiner };
struct Zugangspruefung
{
    Zugang zugang = Zugang::Schreiben;
    // For Keiner: the German message naming the user, the tables and the missing right.
    QString meldung;
};

// Asks the database what its user may do: every table of `lesen` must be readable, `schreiben`
// must be changeable (UPDATE) for more than view-only. A table the database lacks is left to the
// screen's own checks of its structure.
Zugangspruefung zugangPruefen(platform::storage::Database &db, const QStringList &lesen,
                              const QString &schreiben);

} // namespace frame
