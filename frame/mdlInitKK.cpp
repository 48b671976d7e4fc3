#include "mdlInitKK.h"

#include "Fehlerbericht.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

namespace mdlInitKK {

namespace {

const QString fehlerOrtInit = QStringLiteral("in mdlInitKK");
const QString fehlerOrtKontrolle = QStringLiteral("zelKontenStamm: in KKFeldKontrolle");
// No default value: rows that exist keep no value in the new column.
const QString SpalteHinzufuegen = QStringLiteral("ALTER TABLE ObjKanzleiKontenstamm ")
    + QStringLiteral("ADD COLUMN KontoZusatzDatenJN integer;");

Feldwert zahl(const char *feld, int wert)
{
    return Feldwert {QString::fromUtf8(feld), QVariant(wert)};
}

Feldwert leer(const char *feld)
{
    // An empty text, not Null: the text fields of a new account are "".
    return Feldwert {QString::fromUtf8(feld), QVariant(QStringLiteral(""))};
}

} // namespace

const std::vector<Feldwert> &kontoAnfangswerte()
{
    static const std::vector<Feldwert> werte {
        leer("KontoBezeichnung"),
        leer("KontoAnmerkung1"),
        leer("KontoAnmerkung2"),
        zahl("KontoTypus", 0),
        zahl("KontoUstProz", 0),
        leer("KontoUstKtoNr"),
        zahl("KontoBkENAbrDef", 0),
        zahl("KontoBkBlockPos", 0),
        zahl("KontoBkEinnAusgPos", 0),
        zahl("KontoBkAbrVerdichtKz", 0),
        zahl("KontoAbrSchlPos", 0),
        zahl("KontoVSTKuerz", 0),
        // 100 = no definition: 0 is a real rate.
        zahl("KontoAbrUstProz", 100),
        zahl("KontoBkEinnUstProz", 0),
        zahl("KontoÖNORMAbrPos_I_II_III", 0),
        zahl("KontoÖNORMAbrPos_ABC", 0),
        zahl("KontoÖNORMAbrBlockPos", 0),
        zahl("KontoÖNORMAbrKontenArt", 0),
        zahl("KontoHeEinnAusgPos", 0),
        zahl("KontoHeAbrVerdichtKz", 0),
        zahl("KontoBeiblPos", 0),
        zahl("KontoBeiblVerdichtKz", 0),
        zahl("KontoHmzresPos", 0),
        zahl("KontoHmzresVerdichtKz", 0),
        zahl("KontoErhbeitrPos", 0),
        zahl("KontoErhbeitrVerdichtKz", 0),
        zahl("KontoVoranmPos", 0),
        zahl("KontoStornoDatum", 0),
        // Spelled with a small "z"; field names are matched without regard to case.
        zahl("KontozusatzdatenJN", 0),
        zahl("KontoAbschlArt", 0),
        leer("KontoSbkGuvKontoNr"),
        leer("KontoEbkKontoNr"),
        zahl("KontoPos1", 0),
        zahl("KontoPos2", 0),
        zahl("KontoPos3", 0),
        zahl("KontoBilPosAktPass", 0),
        leer("KontoBilPosABC"),
        leer("KontoBilPosRöm"),
        leer("KontoBilPosArab"),
        leer("KontoBilPosABCklein"),
        leer("KontoSachKtNr"),
        leer("KontoBuchArt"),
        leer("KontoZLSperre"),
        leer("KontoVerdichtKZ"),
        leer("KontoSAPKtNr"),
        leer("KontoSAPKtNr2"),
        zahl("KontoPVAKz", 0),
        zahl("KontoPVAZusatz", -1),
        // Written a second time, as it always was; harmless.
        zahl("KontoVSTKuerz", 0),
        zahl("KontoRechtsbereich", 0),
        zahl("KontoEstgPflichtig", 0),
    };
    return werte;
}

void KontoFelderInitialisieren(platform::storage::Recordset &Datensatz)
{
    for (const Feldwert &f : kontoAnfangswerte()) {
        try {
            Datensatz.setFeld(f.feld, f.wert);
        } catch (const platform::RuntimeError &fehler) {
            frame::FehlerMelden(fehlerOrtInit, fehler);
        }
    }
}

void KKFeldKontrolle(platform::storage::Database &db)
{
    try {
        db.execute(SpalteHinzufuegen);
    } catch (const platform::RuntimeError &fehler) {
        frame::FehlerMelden(fehlerOrtKontrolle, fehler);
    }
}

bool KKFeldKontrolleStill(platform::storage::Database &db)
{
    try {
        const QStringList fehlend
            = platform::storage::fehlendeSpalten(db, QStringLiteral("ObjKanzleiKontenstamm"));
        if (!fehlend.contains(QStringLiteral("KontoZusatzDatenJN"), Qt::CaseInsensitive))
            return false;
        db.execute(SpalteHinzufuegen);
        return true;
    } catch (const platform::RuntimeError &fehler) {
        frame::FehlerMelden(fehlerOrtKontrolle, fehler);
        return false;
    }
}

} // namespace mdlInitKK
