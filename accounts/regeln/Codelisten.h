#pragma once

#include <QString>
#include <QStringView>
#include <QVariant>
#include <vector>

// The fixed code lists of the account definitions: each definition combo shows one list, the
// record stores a small number through the combo's hidden field. Plain data and the two
// mappings between a chosen item and the stored value, so that the screen, the whole-year check
// and the import all decide alike.
namespace kontenregeln {

// How a chosen item becomes the stored value.
enum class Abbildung {
    Einfach, // the item code itself
    UstProz, // the VAT percentage (100 = no definition)
    BkAbrUstProz, // the statement's VAT rule (100 = no definition)
    Voranmeldung, // the VAT return line, by booking year (old codes before 2003)
};

struct Eintrag
{
    int code = 0;
    QString text;
    // Stored value (Voranmeldung: before 2003). Einfach lists store the code.
    int wert = 0;
    // Voranmeldung only: stored value from 2003 on.
    int wertAb2003 = 0;
};

struct Codeliste
{
    QString kombi; // the combo that shows the list
    QString feld; // the hidden field that holds the stored value
    QString spalte; // the column of the account record
    int seite = 1; // the register page that shows the combo
    Abbildung abbildung = Abbildung::Einfach;
    // Shown when a stored value lies beyond the list; empty: the list has no message of its own.
    QString ungueltigText;
    std::vector<Eintrag> eintraege;
};

// Every list, in the order the screen fills its combos.
const std::vector<Codeliste> &codelisten();
// The list shown by `kombi`, nullptr for a combo without a fixed list.
const Codeliste *codeliste(QStringView kombi);

// First booking year whose VAT return uses the codes of the return lines themselves.
constexpr int ErstesJahrNeueVoranmeldung = 2003;

// The value stored when the item with `itemCode` is chosen in booking year `jahr`.
int gespeicherterWert(const Codeliste &liste, int itemCode, int jahr);

struct Anzeige
{
    // List position to show; -1 shows no item.
    int position = -1;
    // The value lies beyond the list: the screen shows ungueltigText and keeps the combo's text.
    bool ungueltig = false;
};

// Where the combo shows the stored value `wert` in booking year `jahr`.
Anzeige anzeige(const Codeliste &liste, int wert, int jahr);

// Whether `wert` is a value the list can store in booking year `jahr` (the whole-year check
// and the import refuse anything else, also where the screen shows it quietly as "keine
// Definition").
bool wertZulaessig(const Codeliste &liste, int wert, int jahr);

// The list text the screen shows for the value `wert` of column `spalte` in booking year `jahr`
// ("Kanzleikonto" for a KontoTypus of 0); empty for a column without a list or a value the list
// does not show.
QString codeText(QStringView spalte, const QVariant &wert, int jahr);

// The notice beside the VAT return line: for the item chosen (by item code) and for a stored
// value. Empty: hide the notice.
QString code75Hinweis(int itemCode);
QString code75HinweisFuerWert(int wert);

} // namespace kontenregeln
