#pragma once

#include <QString>
#include <QVariantList>

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

} // namespace frame
