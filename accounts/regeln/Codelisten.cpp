#include "accounts/regeln/Codelisten.h"

#include <algorithm>

namespace kontenregeln {

namespace {

// Texts, codes and order exactly as the users know them (not sorted by code; "VST-Sammelkonto"
// and "UST-Sammelkonto" share code 5 on purpose).
const std::vector<Codeliste> Listen = {
    {QStringLiteral("cmbKontoTypus"),
     QStringLiteral("inpKontoTypus"),
     QStringLiteral("KontoTypus"),
     1,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert in cmbKontoTypus.text"),
     {
         {0, QStringLiteral("Kanzleikonto"), 0},
         {1, QStringLiteral("Objektkonto"), 1},
         {2, QStringLiteral("Kanzleikonto unterteilt"), 2},
     }},
    {QStringLiteral("cmbKontoZusatzdatenJN"),
     QStringLiteral("inpKontoZusatzDatenJN"),
     QStringLiteral("KontoZusatzdatenJn"),
     1,
     Abbildung::Einfach,
     QString(),
     {
         {0, QStringLiteral("Nein keine Zusatzdaten"), 0},
         {1, QStringLiteral("JA Zusatzdaten"), 1},
     }},
    {QStringLiteral("cmbKostenArt"),
     QStringLiteral("inpKostenArt"),
     QStringLiteral("KontoÖNORMAbrKontenArt"),
     3,
     Abbildung::Einfach,
     QStringLiteral(" ungültiger Wert in cbmKostenArt.Text"),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("ÖN-A4000, Konto nur f.WEigentum"), 1},
     }},
    {QStringLiteral("cmbKontoVoranmPos"),
     QStringLiteral("inpKontoVoranmPos"),
     QStringLiteral("KontoVoranmPos"),
     1,
     Abbildung::Voranmeldung,
     QString(),
     {
         {0, QStringLiteral("keine Definition"), 0, 0},
         {1, QStringLiteral("Ertragskonto 10% (bis 2002)"), 3, 0},
         {2, QStringLiteral("Mwst-Konto 10% (bis 2002)"), 13, 0},
         {3, QStringLiteral("Ertragskonto 20% (bis 2002)"), 1, 0},
         {4, QStringLiteral("Mwst-Konto 20% (bis 2002)"), 11, 0},
         {5, QStringLiteral("Hinzurechnungskonto (bis 2002)"), 29, 0},
         {6, QStringLiteral("Vorsteuerkonto (bis 2002)"), 21, 0},
         {7, QStringLiteral("We-Aufwandkonto 10% (bis 2002)"), 53, 0},
         {8, QStringLiteral("We-Aufwandkonto 20%) (bis 2002)"), 51, 0},
         {9, QStringLiteral("Steuerfrei gem. §6 Abs.1 Z 9 (bis 2002)"), 19, 0},
         {10, QStringLiteral("Steuerfrei gem. §6 Abs.1 Z ___ (bis 2002)"), 20, 0},
         {105, QStringLiteral("USt Code 005"), 0, 5},
         {101, QStringLiteral("USt Code 001"), 0, 1},
         {121, QStringLiteral("USt Code 021"), 0, 21},
         {111, QStringLiteral("USt Code 011"), 0, 11},
         {112, QStringLiteral("USt Code 012"), 0, 12},
         {115, QStringLiteral("USt Code 015"), 0, 15},
         {117, QStringLiteral("USt Code 017"), 0, 17},
         {118, QStringLiteral("USt Code 018"), 0, 18},
         {119, QStringLiteral("USt Code 019"), 0, 19},
         {116, QStringLiteral("USt Code 016"), 0, 16},
         {120, QStringLiteral("USt Code 020"), 0, 20},
         {122, QStringLiteral("USt Code 022"), 0, 22},
         {129, QStringLiteral("USt Code 029"), 0, 29},
         {125, QStringLiteral("USt Code 025"), 0, 25},
         {135, QStringLiteral("USt Code 035"), 0, 35},
         {137, QStringLiteral("USt Code 037"), 0, 37},
         {152, QStringLiteral("USt Code 052"), 0, 52},
         {138, QStringLiteral("USt Code 038"), 0, 38},
         {156, QStringLiteral("USt Code 056"), 0, 56},
         {157, QStringLiteral("USt Code 057"), 0, 57},
         {148, QStringLiteral("USt Code 048"), 0, 48},
         {144, QStringLiteral("USt Code 044 neu ab 2006"), 0, 44},
         {171, QStringLiteral("USt Code 071"), 0, 71},
         {172, QStringLiteral("USt Code 072"), 0, 72},
         {173, QStringLiteral("USt Code 073"), 0, 73},
         {175, QStringLiteral("USt Code 075 bis 2008"), 0, 75},
         {188, QStringLiteral("USt Code 088 neu ab 2008"), 0, 88},
         {176, QStringLiteral("USt Code 076"), 0, 76},
         {177, QStringLiteral("USt Code 077"), 0, 77},
         {160, QStringLiteral("USt Code 060"), 0, 60},
         {161, QStringLiteral("USt Code 061"), 0, 61},
         {183, QStringLiteral("USt Code 083 neu ab 2006"), 0, 83},
         {165, QStringLiteral("USt Code 065"), 0, 65},
         {166, QStringLiteral("USt Code 066"), 0, 66},
         {182, QStringLiteral("USt Code 082"), 0, 82},
         {187, QStringLiteral("USt Code 087 neu ab 2006"), 0, 87},
         {164, QStringLiteral("USt Code 064"), 0, 64},
         {162, QStringLiteral("USt Code 062"), 0, 62},
         {163, QStringLiteral("USt Code 063"), 0, 63},
         {167, QStringLiteral("USt Code 067"), 0, 67},
         {190, QStringLiteral("USt Code 090"), 0, 90},
         {127, QStringLiteral("USt Code 027"), 0, 27},
         {128, QStringLiteral("USt Code 028"), 0, 28},
         {132, QStringLiteral("USt Code 032"), 0, 32},
         {189, QStringLiteral("USt Code 089"), 0, 89},
         {106, QStringLiteral("USt Code 006"), 0, 6},
         {107, QStringLiteral("USt Code 007"), 0, 7},
         {108, QStringLiteral("USt Code 008"), 0, 8},
         {196, QStringLiteral("096 VST nicht abzugsfähig"), 0, 96},
         {197, QStringLiteral("097 We-Aufwandk. 20%"), 0, 97},
         {198, QStringLiteral("098 We-Aufwandk. 10%"), 0, 98},
         {199, QStringLiteral("099 USt Sammelkonto"), 0, 99},
         {109, QStringLiteral("USt Code 009"), 0, 9},
         {110, QStringLiteral("USt Code 010"), 0, 10},
     }},
    {QStringLiteral("cmbBkENAbrDef"),
     QStringLiteral("inpBKENAbrDef"),
     QStringLiteral("KontoBkENAbrDef"),
     2,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert in inpBkENAbrDef.Text"),
     {
         {0, QStringLiteral("keine Definition (kein Bk-Abrechnungskonto)"), 0},
         {1, QStringLiteral("Konto für Mieter-BkAbrechnung"), 1},
         {2, QStringLiteral("Konto für Wohnungseigentümer-Abrechnung"), 2},
     }},
    {QStringLiteral("cmbBkEinnAusgPos"),
     QStringLiteral("inpBkEinnAusgPos"),
     QStringLiteral("KontoBkEinnAusgPos"),
     2,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpBkEinnAusgPos.Text"),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("Ausweis als Aufwands-Konto"), 1},
         {2, QStringLiteral("Ausweis als Einnahmen-Konto"), 2},
         {3, QStringLiteral("Ausweis als Bk-Verrechnungskonto"), 3},
         {4, QStringLiteral("Ausweis als Bk-Saldovortrag"), 4},
     }},
    {QStringLiteral("cmbEstgPflichtig"),
     QStringLiteral("inpEstgPflichtig"),
     QStringLiteral("KontoEstgpflichtig"),
     2,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpEstgPflichtig.Text"),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("EstG pflichtig"), 1},
     }},
    {QStringLiteral("cmbBkAbrVerdichtKz"),
     QStringLiteral("inpBkAbrVerdichtKz"),
     QStringLiteral("KontoBkAbrVerdichtKz"),
     2,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpBkAbrVerdichtKz.Text"),
     {
         {0, QStringLiteral("keine Definition (Standardzeile pro Einzelbuchung)"), 0},
         {1, QStringLiteral("eine Zeile mit dem Konto-Abrechnungssaldo"), 1},
         {2, QStringLiteral("eine Zeile pro Konto-Monatssaldo, Datumsausweis"), 2},
         {3, QStringLiteral("eine Zeile pro Konto-Monatssaldo, mit Buchungstext"), 3},
         {4, QStringLiteral("Ausweis Buchungsdatum"), 4},
         {5, QStringLiteral("eine Zeile mit Von-Bis-Periode und Kontosaldo"), 5},
     }},
    {QStringLiteral("cmbHeEinnAusgPos"),
     QStringLiteral("inpHeEinnAusgPos"),
     QStringLiteral("KontoHeEinnAusgPos"),
     4,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpHeEinnAusgPos.Text"),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("Ausweis als HeAbrech-Einnahmen-Konto"), 1},
         {2, QStringLiteral("Ausweis als HeAbrech-Aufwands-Konto"), 2},
     }},
    {QStringLiteral("cmbHeAbrVerdichtKz"),
     QStringLiteral("inpHeAbrVerdichtKz"),
     QStringLiteral("KontoHeAbrVerdichtKz"),
     4,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpHeAbrVerdichtKz.Text"),
     {
         {0, QStringLiteral("keine Definition (Standardzeile pro Einzelbuchung)"), 0},
         {1, QStringLiteral("eine Zeile mit dem Konto-Abrechnungssaldo"), 1},
         {2, QStringLiteral("eine Zeile pro Konto-Monatssaldo, Datumsausweis"), 2},
         {3, QStringLiteral("eine Zeile pro Konto-Monatssaldo, mit Buchungstext"), 3},
         {4, QStringLiteral("Ausweis Buchungsdatum"), 4},
         {5, QStringLiteral("eine Zeile mit Von-Bis-Periode und Kontosaldo"), 5},
     }},
    {QStringLiteral("cmbKontoHmzResPos"),
     QStringLiteral("inpKontoHmzResPos"),
     QStringLiteral("KontoHmzResPos"),
     6,
     Abbildung::Einfach,
     QString(),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("HMZ-Einnahmen"), 1},
         {2, QStringLiteral("HMZ-Ausgaben"), 2},
         {3, QStringLiteral("HMZ-Ausgaben + 20%"), 3},
         {4, QStringLiteral("HMZ-Ausgaben EHB"), 4},
         {5, QStringLiteral("HMZ-Ausgaben EHB + 20%"), 5},
         {6, QStringLiteral("EHB"), 6},
         {7, QStringLiteral("HMZ-Einnahmen (Werbeeinnahmen -25%)"), 7},
     }},
    {QStringLiteral("cmbKontoHmzResVerdichtKz"),
     QStringLiteral("inpKontoHmzResVerdichtKz"),
     QStringLiteral("KontoHmzResVerdichtKz"),
     6,
     Abbildung::Einfach,
     QString(),
     {
         {0, QStringLiteral("keine Definition (Standardzeile pro Einzelbuchung)"), 0},
         {1, QStringLiteral("Saldenzeile Auswahlperiode"), 1},
         {2, QStringLiteral("Monats-Saldenzeile"), 2},
     }},
    {QStringLiteral("cmbKontoUstProz"),
     QStringLiteral("inpKontoUstProz"),
     QStringLiteral("KontoUstProz"),
     1,
     Abbildung::UstProz,
     QStringLiteral("ungültiger Wert inpKontoUstproz.Text"),
     {
         {0, QStringLiteral("keine Definition"), 100},
         {1, QStringLiteral("0%"), 0},
         {2, QStringLiteral("10%"), 10},
         {3, QStringLiteral("20%"), 20},
         {4, QStringLiteral("7%"), 7},
         {5, QStringLiteral("19%"), 19},
         {6, QStringLiteral("12%"), 12},
         {7, QStringLiteral("13%"), 13},
         {8, QStringLiteral("5%"), 5},
     }},
    {QStringLiteral("cmbBkAbrUstProz"),
     QStringLiteral("inpAbrUstProz"),
     QStringLiteral("KontoAbrUstProz"),
     2,
     Abbildung::BkAbrUstProz,
     QStringLiteral("ungültiger Wert inpAbrUstproz.Text"),
     {
         {0, QStringLiteral("keine Definition"), 100},
         {1, QStringLiteral("0,10,20% ... je nach BE-Mwst (Normalfall Bk-Aufwand)"), 99},
         {2, QStringLiteral("0% wenn BE-Mwst=0, sonst 20% (Heizung-Bk-Aufwand)"), 98},
         {3, QStringLiteral("Bk-EinnKonto 0% (Aufteilung mit BN-Mwst 0%)"), 900},
         {4, QStringLiteral("Bk-EinnKonto 10% (Aufteilung mit BN-Mwst 10%)"), 910},
         {5, QStringLiteral("Bk-EinnKonto 20% (Aufteilung mit BN-Mwst 20%)"), 920},
         {6, QStringLiteral("0%"), 0},
         {7, QStringLiteral("10%"), 10},
         {8, QStringLiteral("20%"), 20},
         {9, QStringLiteral("0,7,19% ... je nach BE-Mwst (Normalfall Bk-Aufwand)"), 89},
         {10, QStringLiteral("0% wenn BE-Mwst=0, sonst 19% (Heizung-Bk-Aufwand)"), 88},
         {11, QStringLiteral("7%"), 7},
         {12, QStringLiteral("19%"), 19},
     }},
    {QStringLiteral("cmbBeiblPos"),
     QStringLiteral("inpBeiblPos"),
     QStringLiteral("KontoBeiblPos"),
     5,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpBeiblPos.Text"),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("Einnahmen verrechnungspflichtig (rücklagefähig)"), 1},
         {2,
          QStringLiteral(
              "Einnahmen verr.pflichtig 25/75% (25% rückl.fähig / 75% nicht rückl.fähig)"),
          2},
         {3, QStringLiteral("Einnahmen verrechnungsfrei (nicht rücklagefähig)"), 3},
         {4, QStringLiteral("Ausgaben ohne AFA"), 4},
         {5, QStringLiteral("Ausgaben ohne Afa nur S (nur Soll-Buchungen)"), 5},
         {6, QStringLiteral("Ausgaben Großreparatur"), 6},
         {7, QStringLiteral("Ausgaben Großreparatur nur S (nur Soll-Buchungen)"), 7},
         {8, QStringLiteral("Ausgaben Instandhaltung"), 8},
         {9, QStringLiteral("Ausgaben Herstellaufwand"), 9},
         {10, QStringLiteral("Ausgaben Instandsetzung"), 10},
     }},
    {QStringLiteral("cmbBeiblVerdichtKz"),
     QStringLiteral("inpBeiblVerdichtKz"),
     QStringLiteral("KontoBeiblVerdichtKz"),
     5,
     Abbildung::Einfach,
     QStringLiteral("ungültiger Wert inpBeiblVerdichtKz.Text"),
     {
         {0, QStringLiteral("keine Definition (Zeile pro Einzelbuchung)"), 0},
         {1, QStringLiteral("eine Zeile mit dem Kontosaldo"), 1},
         {2, QStringLiteral("eine Zeile pro Konto-Monatssaldo"), 2},
     }},
    {QStringLiteral("cmbKontoAbschlArt"),
     QStringLiteral("inpKontoAbschlArt"),
     QStringLiteral("KontoAbschlArt"),
     7,
     Abbildung::Einfach,
     QString(),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("Aufwand-/Erlöskonto"), 1},
         {2, QStringLiteral("Bestandskonto"), 2},
         {3, QStringLiteral("GuV-Sammelkonto"), 3},
         {4, QStringLiteral("SBK-Sammelkonto"), 4},
         {5, QStringLiteral("EBK-Sammelkonto"), 5},
     }},
    {QStringLiteral("cmbKontoPVAKz"),
     QStringLiteral("inpKontoPVAKz"),
     QStringLiteral("KontoPVAKz"),
     7,
     Abbildung::Einfach,
     QString(),
     {
         {0, QStringLiteral("keine Definition"), 0},
         {1, QStringLiteral("Aufwand"), 1},
         {2, QStringLiteral("Erlös"), 2},
         {3, QStringLiteral("Aktiva"), 3},
         {4, QStringLiteral("Passiva"), 4},
         {5, QStringLiteral("VST-Sammelkonto"), 5},
         {5, QStringLiteral("UST-Sammelkonto"), 5},
     }},

};

} // namespace

const std::vector<Codeliste> &codelisten()
{
    return Listen;
}

const Codeliste *codeliste(QStringView kombi)
{
    for (const Codeliste &l : Listen) {
        if (l.kombi == kombi)
            return &l;
    }
    return nullptr;
}

int gespeicherterWert(const Codeliste &liste, int itemCode, int jahr)
{
    const auto it = std::find_if(liste.eintraege.begin(), liste.eintraege.end(),
                                 [&](const Eintrag &e) { return e.code == itemCode; });
    if (it == liste.eintraege.end())
        return liste.abbildung == Abbildung::UstProz || liste.abbildung == Abbildung::BkAbrUstProz
            ? 100
            : 0;
    if (liste.abbildung == Abbildung::Voranmeldung)
        return jahr < ErstesJahrNeueVoranmeldung ? it->wert : it->wertAb2003;
    return it->wert;
}

Anzeige anzeige(const Codeliste &liste, int wert, int jahr)
{
    const int anzahl = static_cast<int>(liste.eintraege.size());
    switch (liste.abbildung) {
    case Abbildung::Voranmeldung: {
        // Only the lines of the year's scheme show a stored value; anything else is "keine
        // Definition", without a message.
        const bool alt = jahr < ErstesJahrNeueVoranmeldung;
        for (int i = 1; i < anzahl && wert != 0; ++i) {
            const Eintrag &e = liste.eintraege[i];
            if (alt ? e.wert == wert : (e.code > 100 && e.code - 100 == wert))
                return {i, false};
        }
        return {0, false};
    }
    case Abbildung::UstProz:
    case Abbildung::BkAbrUstProz:
        // A percentage not in the list shows "keine Definition".
        for (int i = 0; i < anzahl; ++i) {
            if (liste.eintraege[i].wert == wert)
                return {i, false};
        }
        return {0, false};
    case Abbildung::Einfach:
        break;
    }
    if (liste.ungueltigText.isEmpty()) {
        // Lists without a message of their own show the first item carrying the value (a stored
        // 5 of the PVA list is "VST-Sammelkonto") and nothing for a value they do not hold.
        for (int i = 0; i < anzahl; ++i) {
            if (liste.eintraege[i].wert == wert)
                return {i, false};
        }
        return {-1, false};
    }
    if (wert < 0 || wert > anzahl - 1)
        return {-1, true};
    return {wert, false};
}

bool wertZulaessig(const Codeliste &liste, int wert, int jahr)
{
    for (const Eintrag &e : liste.eintraege) {
        if (gespeicherterWert(liste, e.code, jahr) == wert)
            return true;
    }
    return false;
}

QString code75Hinweis(int itemCode)
{
    if (itemCode == 175 || itemCode == 188)
        return QStringLiteral("Code 088 war bis zum Jahr 2008 Code 075!!!");
    if (itemCode == 135 || itemCode == 137)
        return QStringLiteral("Code 037 war bis zum Jahr 2008 Code 035!!!");
    return {};
}

QString code75HinweisFuerWert(int wert)
{
    return wert == 75 || wert == 88 || wert == 35 || wert == 37 ? code75Hinweis(wert + 100)
                                                                : QString();
}

QString codeText(QStringView spalte, const QVariant &wert, int jahr)
{
    bool ok = false;
    const int code = wert.toInt(&ok);
    if (!ok)
        return {};
    for (const Codeliste &l : Listen) {
        if (QStringView(l.spalte).compare(spalte, Qt::CaseInsensitive) != 0)
            continue;
        const Anzeige a = anzeige(l, code, jahr);
        if (a.ungueltig || a.position < 0 || a.position >= int(l.eintraege.size()))
            return {};
        return l.eintraege[size_t(a.position)].text;
    }
    return {};
}

} // namespace kontenregeln
