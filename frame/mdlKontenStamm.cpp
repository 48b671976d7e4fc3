#include "mdlKontenStamm.h"

namespace mdlKontenStamm {

QVariantList AufrufInfo;
QString DatenbankPfad;
QString AufrufText1;
qint16 AufrufZahl2 = 0;
QString AufrufText4;
bool NurAnzeige = false;
qint16 Buchungsjahr = 0;
qint16 VerarbeitungsBuchungsjahr = 0;
bool Sondereinstieg = false;
QString AktuellesProgramm;
bool Programmende_OK = false;
QString VerbindungsArt;
qint16 BildschirmBreite = 0;
qint16 BildschirmHoehe = 0;

QString FehlerOrt;
QString FehlerZusatz1;
QString FehlerZusatz2;
qint16 FehlerAntwort = 0;
bool HilfeVorhanden = false;
QString Hilfedatei;

bool PruefungFehlgeschlagen = false;
QString NeueroeffnungsNr = festeLaenge6({});
QString NeueKontoNr = festeLaenge6({});
QString LeseNr = festeLaenge6({});
bool KontoGefunden = false;
QString UebernahmeKontoNr;
bool ImNummernfeldBleiben = false;
bool NeueroeffnungVomNummernfeld = false;
bool VerrechnungskontoWirdEroeffnet = false;
bool NeueroeffnungLaeuft = false;
bool BezeichnungFokusAusstehend = false;
bool DialogAbgebrochen = false;
bool UebernahmeAbgebrochen = false;
bool LoeschungLaeuft = false;

QString festeLaenge6(const QString &text)
{
    return text.left(6).leftJustified(6, QLatin1Char(' '));
}

void zuruecksetzen()
{
    AufrufInfo = QVariantList(AufrufInfoGroesse);
    DatenbankPfad.clear();
    AufrufText1.clear();
    AufrufZahl2 = 0;
    AufrufText4.clear();
    NurAnzeige = false;
    Buchungsjahr = 0;
    VerarbeitungsBuchungsjahr = 0;
    Sondereinstieg = false;
    AktuellesProgramm.clear();
    Programmende_OK = false;
    VerbindungsArt.clear();
    FehlerOrt.clear();
    FehlerZusatz1.clear();
    FehlerZusatz2.clear();
    FehlerAntwort = 0;
    HilfeVorhanden = false;
    Hilfedatei.clear();
    PruefungFehlgeschlagen = false;
    NeueroeffnungsNr = festeLaenge6({});
    NeueKontoNr = festeLaenge6({});
    LeseNr = festeLaenge6({});
    KontoGefunden = false;
    UebernahmeKontoNr.clear();
    ImNummernfeldBleiben = false;
    NeueroeffnungVomNummernfeld = false;
    VerrechnungskontoWirdEroeffnet = false;
    NeueroeffnungLaeuft = false;
    BezeichnungFokusAusstehend = false;
    DialogAbgebrochen = false;
    UebernahmeAbgebrochen = false;
    LoeschungLaeuft = false;
}

} // namespace mdlKontenStamm
