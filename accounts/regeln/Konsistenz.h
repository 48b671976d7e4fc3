#pragma once

#include <QString>
#include <functional>
#include <optional>

// Whether an account's definitions fit together, decided on plain values. The account screen
// runs the same rules in the same order before a record is written; the whole-year check runs
// them without a screen.
namespace kontenregeln {

// The stored definitions the checks read (codes as stored, numbers as texts).
struct KontoDefinition
{
    QString kontoNr;
    QString bezeichnung;
    int zusatzDatenJN = 0;
    int ustProz = 100; // 0 and 100: no VAT percentage
    QString ustKtoNr;
    int voranmPos = 0;
    int bkENAbrDef = 0;
    QString bkBlockPos = QStringLiteral("0");
    int bkEinnAusgPos = 0;
    int abrUstProz = 100;
    int abrPos1 = 0;
    int abrPos2 = 0;
    QString heEinnAusgPos = QStringLiteral("0");
    int heAbrVerdichtKz = 0;
    QString sbkGuvKontoNr;
    QString ebkKontoNr;
    int zl7Pos1 = 0;
    int zl7Pos2 = 0;
    int zl7Pos3 = 0;
};

// The VAT return code of a VAT correction: needs a percentage but no VAT account.
constexpr int VoranmeldungUstBerichtigung = 90;

bool bezeichnungFehlt(const KontoDefinition &d);
bool ustKontoFehlt(const KontoDefinition &d);
bool bkUnvollstaendig(const KontoDefinition &d);
bool oenormUnvollstaendig(const KontoDefinition &d);
bool heFehlerhaft(const KontoDefinition &d);
bool zl7Zugeordnet(const KontoDefinition &d);
bool zusatzDatenJNFalsch(const KontoDefinition &d);

// The checks in the order they run. Pages 1 to 6 run Bezeichnung to He; page 7 the rest.
enum class Pruefung {
    Bezeichnung,
    UstQuer,
    UstKonto,
    Bk,
    Oenorm,
    He,
    SbkGuvKonto,
    EbkKonto,
    Zl7,
};

struct Befund
{
    Pruefung pruefung;
    QString titel; // empty: the application's default title
    QString meldung;
    int seite; // register page that holds the field (1 to 7)
    QString feld; // the control that gets the focus
};

// Look-ups in the booking year and the ZL7 master.
struct Nachschlagen
{
    std::function<bool(const QString &kontoNr)> kontoVorhanden;
    std::function<bool(int pos1, int pos2, int pos3)> zl7Vorhanden;
};

// The first failing check of the group that runs while register page `seite` is selected;
// nullopt when the record passes (or the page runs no checks).
std::optional<Befund> ersterBefund(const KontoDefinition &d, int seite, const Nachschlagen &n);
// Every group (pages 1 to 6, then page 7): what a whole-year check reports for one account.
std::optional<Befund> ersterBefundAllerSeiten(const KontoDefinition &d, const Nachschlagen &n);

// The texts of the checks, also used by the screen.
namespace pruefungstexte {
inline const QString BezeichnungLeer
    = QStringLiteral("KontoBezeichnung darf nicht leer gelassen werden");
QString ustKontoFehlt();
inline const QString TitelUnvollstaendig = QStringLiteral("unvollständige Bk-Abrech-Definitionen");
QString bkUnvollstaendig();
QString oenormUnvollstaendig();
inline const QString TitelHeFehler = QStringLiteral("Fehler in He-Abrech-Definitionen");
QString heFehlerhaft();
QString zl7Fehlt();
inline const QString ZusatzDatenJNFalsch
    = QStringLiteral("KontoZusatzdaten-JN-Kennzeichen falsch - bitte berichtigen");
} // namespace pruefungstexte

} // namespace kontenregeln
