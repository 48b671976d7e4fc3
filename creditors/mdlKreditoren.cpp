#include "creditors/mdlKreditoren.h"

#include "frame/mdlKontenStamm.h"

namespace creditors::mdlKreditoren {

qint32 KrSuchNr = 0;
bool KrGefunden = false;
qint32 KrNeuNr = 0;
QString KrNeuNrText = mdlKontenStamm::festeLaenge6({});
bool KrNeuAbbruch = false;
QString KrFehlerFeld;
bool KrPositionieren = false;
bool KrAnlageLäuft = false;
bool KrLöschungLäuft = false;
QString KrRückgabeFeld;
bool KrBuchungenVorhanden = false;
int KrBuchungMitObjekt = 0;
qint32 KrGelöschteBuchungen = 0;
int KrFormLeft = 0;
int KrFormTop = 0;
int KrFormWidth = 0;
int KrFormHeight = 0;

void zuruecksetzen()
{
    KrSuchNr = 0;
    KrGefunden = false;
    KrNeuNr = 0;
    KrNeuNrText = mdlKontenStamm::festeLaenge6({});
    KrNeuAbbruch = false;
    KrFehlerFeld.clear();
    KrPositionieren = false;
    KrAnlageLäuft = false;
    KrLöschungLäuft = false;
    KrRückgabeFeld.clear();
    KrBuchungenVorhanden = false;
    KrBuchungMitObjekt = 0;
    KrGelöschteBuchungen = 0;
    KrFormLeft = KrFormTop = KrFormWidth = KrFormHeight = 0;
}

} // namespace creditors::mdlKreditoren
