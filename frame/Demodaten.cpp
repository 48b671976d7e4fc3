#include "Demodaten.h"

#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QDate>
#include <QHash>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <stdexcept>
#include <vector>

using platform::storage::Database;
using platform::storage::Transaktion;

namespace frame {

namespace {

// ---------------------------------------------------------------------------------------------
// Rows

// INSERT of whole rows of one catalogue table; columns numbered by the engine are left out.
class Einfueger
{
public:
    Einfueger(Database &db, const QString &tabellenName)
        : m_db(db)
    {
        const auto *t = platform::storage::tabelle(tabellenName);
        if (!t)
            throw std::logic_error("Tabelle fehlt im Katalog");
        QStringList fragen;
        for (const auto &s : t->spalten) {
            if (s.autoWert)
                continue;
            m_index.insert(s.name, int(m_spalten.size()));
            m_spalten << s.name;
            m_vorlage << (s.anfangswert.isValid() ? s.anfangswert : QVariant());
            fragen << QStringLiteral("?");
        }
        m_sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                    .arg(t->name, m_spalten.join(QStringLiteral(", ")),
                         fragen.join(QStringLiteral(", ")));
    }

    // A row holding the columns' initial values.
    QVariantList neu() const { return m_vorlage; }

    void set(QVariantList &zeile, const char *spalte, const QVariant &wert) const
    {
        const auto it = m_index.constFind(QString::fromUtf8(spalte));
        if (it == m_index.cend())
            throw std::logic_error(std::string("unbekannte Spalte ") + spalte);
        zeile[*it] = wert;
    }

    QVariant get(const QVariantList &zeile, const char *spalte) const
    {
        return zeile.at(m_index.value(QString::fromUtf8(spalte)));
    }

    void einfuegen(const QVariantList &zeile) { m_db.execute(m_sql, zeile); }

private:
    Database &m_db;
    QString m_sql;
    QStringList m_spalten;
    QVariantList m_vorlage;
    QHash<QString, int> m_index;
};

// std::mt19937 gives the same sequence everywhere; the distributions of the standard library
// do not, so the mapping to ranges is done here.
class Zufall
{
public:
    explicit Zufall(std::uint32_t saat)
        : m_gen(saat)
    { }
    int zahl(int von, int bis) { return von + int(m_gen() % std::uint32_t(bis - von + 1)); }
    bool prozent(int p) { return zahl(1, 100) <= p; }
    double betrag(double von, double bis)
    {
        const double x = von + (bis - von) * (double(m_gen()) / double(m_gen.max()));
        return std::round(x * 100.0) / 100.0;
    }

private:
    std::mt19937 m_gen;
};

// ---------------------------------------------------------------------------------------------
// Masters

struct BilPos
{
    int aktPass;
    const char *abc, *roem, *arab, *klein, *text;
};

// Balance sheet after UGB section 224, profit and loss after section 231 (total-cost method).
const std::vector<BilPos> bilanzPositionen {
    {1, "A", "", "", "", "Anlagevermögen"},
    {1, "A", "I", "", "", "Immaterielle Vermögensgegenstände"},
    {1, "A", "I", "1", "",
     "Konzessionen, gewerbliche Schutzrechte und ähnliche Rechte und Vorteile sowie daraus "
     "abgeleitete Lizenzen"},
    {1, "A", "I", "2", "", "Geschäfts(Firmen)wert"},
    {1, "A", "II", "", "", "Sachanlagen"},
    {1, "A", "II", "1", "",
     "Grundstücke, grundstücksgleiche Rechte und Bauten, einschließlich der Bauten auf fremdem "
     "Grund"},
    {1, "A", "II", "2", "", "technische Anlagen und Maschinen"},
    {1, "A", "II", "3", "", "andere Anlagen, Betriebs- und Geschäftsausstattung"},
    {1, "A", "II", "4", "", "geleistete Anzahlungen und Anlagen in Bau"},
    {1, "A", "III", "", "", "Finanzanlagen"},
    {1, "A", "III", "1", "", "Anteile an verbundenen Unternehmen"},
    {1, "A", "III", "3", "", "Beteiligungen"},
    {1, "A", "III", "5", "", "Wertpapiere (Wertrechte) des Anlagevermögens"},
    {1, "A", "III", "6", "", "sonstige Ausleihungen"},
    {1, "B", "", "", "", "Umlaufvermögen"},
    {1, "B", "I", "", "", "Vorräte"},
    {1, "B", "I", "1", "", "Roh-, Hilfs- und Betriebsstoffe"},
    {1, "B", "I", "3", "", "fertige Erzeugnisse und Waren"},
    {1, "B", "II", "", "", "Forderungen und sonstige Vermögensgegenstände"},
    {1, "B", "II", "1", "", "Forderungen aus Lieferungen und Leistungen"},
    {1, "B", "II", "2", "", "Forderungen gegenüber verbundenen Unternehmen"},
    {1, "B", "II", "4", "", "sonstige Forderungen und Vermögensgegenstände"},
    {1, "B", "III", "", "", "Wertpapiere und Anteile"},
    {1, "B", "IV", "", "", "Kassenbestand, Schecks, Guthaben bei Kreditinstituten"},
    {1, "C", "", "", "", "Rechnungsabgrenzungsposten"},
    {1, "D", "", "", "", "Aktive latente Steuern"},
    {2, "A", "", "", "", "Eigenkapital"},
    {2, "A", "I", "", "", "eingefordertes Nennkapital"},
    {2, "A", "II", "", "", "Kapitalrücklagen"},
    {2, "A", "II", "1", "", "gebundene"},
    {2, "A", "II", "2", "", "nicht gebundene"},
    {2, "A", "III", "", "", "Gewinnrücklagen"},
    {2, "A", "III", "1", "", "gesetzliche Rücklage"},
    {2, "A", "III", "3", "", "andere Rücklagen (freie Rücklagen)"},
    {2, "A", "IV", "", "", "Bilanzgewinn (Bilanzverlust)"},
    {2, "A", "IV", "", "a", "davon Gewinnvortrag / Verlustvortrag"},
    {2, "B", "", "", "", "Rückstellungen"},
    {2, "B", "", "1", "", "Rückstellungen für Abfertigungen"},
    {2, "B", "", "2", "", "Rückstellungen für Pensionen"},
    {2, "B", "", "3", "", "Steuerrückstellungen"},
    {2, "B", "", "4", "", "sonstige Rückstellungen"},
    {2, "C", "", "", "", "Verbindlichkeiten"},
    {2, "C", "", "2", "", "Verbindlichkeiten gegenüber Kreditinstituten"},
    {2, "C", "", "3", "", "erhaltene Anzahlungen auf Bestellungen"},
    {2, "C", "", "4", "", "Verbindlichkeiten aus Lieferungen und Leistungen"},
    {2, "C", "", "8", "", "sonstige Verbindlichkeiten"},
    {2, "C", "", "8", "a", "davon aus Steuern"},
    {2, "C", "", "8", "b", "davon im Rahmen der sozialen Sicherheit"},
    {2, "D", "", "", "", "Rechnungsabgrenzungsposten"},
    {3, "", "", "1", "", "Umsatzerlöse"},
    {3, "", "", "4", "", "sonstige betriebliche Erträge"},
    {3, "", "", "4", "c", "übrige"},
    {3, "", "", "6", "", "Personalaufwand"},
    {3, "", "", "6", "a", "Löhne"},
    {3, "", "", "6", "b", "Gehälter"},
    {3, "", "", "6", "c", "soziale Aufwendungen"},
    {3, "", "", "7", "", "Abschreibungen"},
    {3, "", "", "7", "a", "auf immaterielle Gegenstände des Anlagevermögens und Sachanlagen"},
    {3, "", "", "8", "", "sonstige betriebliche Aufwendungen"},
    {3, "", "", "8", "a", "Steuern, soweit sie nicht unter Steuern vom Einkommen fallen"},
    {3, "", "", "8", "b", "übrige"},
    {3, "", "", "11", "", "sonstige Zinsen und ähnliche Erträge"},
    {3, "", "", "15", "", "Zinsen und ähnliche Aufwendungen"},
    {3, "", "", "18", "", "Steuern vom Einkommen und vom Ertrag"},
};

struct Zl7Pos
{
    int p1, p2, p3;
    const char *text;
};

const std::vector<Zl7Pos> zl7Positionen {
    {1, 0, 0, "Aktiva"},
    {1, 1, 0, "Anlagevermögen"},
    {1, 1, 1, "Immaterielles Anlagevermögen"},
    {1, 1, 2, "Sachanlagen"},
    {1, 1, 3, "Finanzanlagen"},
    {1, 2, 0, "Umlaufvermögen"},
    {1, 2, 1, "Forderungen"},
    {1, 2, 2, "Kassa und Bankguthaben"},
    {1, 2, 3, "Aktive Rechnungsabgrenzung"},
    {2, 0, 0, "Passiva"},
    {2, 1, 0, "Eigenkapital"},
    {2, 1, 1, "Stammkapital"},
    {2, 1, 2, "Gewinn-/Verlustvortrag"},
    {2, 2, 0, "Rückstellungen"},
    {2, 2, 1, "Rückstellungen"},
    {2, 3, 0, "Verbindlichkeiten"},
    {2, 3, 1, "Bankverbindlichkeiten"},
    {2, 3, 2, "Lieferverbindlichkeiten"},
    {2, 3, 3, "Abgabenverbindlichkeiten"},
    {2, 3, 4, "sonstige Verbindlichkeiten"},
    {2, 3, 5, "Passive Rechnungsabgrenzung"},
    {3, 0, 0, "Erträge"},
    {3, 1, 0, "Honorarerlöse"},
    {3, 1, 1, "Verwaltungshonorare"},
    {3, 1, 2, "Sonderhonorare"},
    {3, 2, 0, "sonstige Erträge"},
    {3, 2, 1, "Miet- und Zinserträge"},
    {4, 0, 0, "Aufwendungen"},
    {4, 1, 0, "Personalaufwand"},
    {4, 1, 1, "Gehälter und Lohnnebenkosten"},
    {4, 2, 0, "Abschreibungen"},
    {4, 2, 1, "Planmäßige Abschreibungen"},
    {4, 3, 0, "Sachaufwand"},
    {4, 3, 1, "Raumaufwand"},
    {4, 3, 2, "Verwaltungsaufwand"},
    {4, 3, 3, "Fahrzeugaufwand"},
    {4, 4, 0, "Finanzaufwand"},
    {4, 4, 1, "Zinsen und Spesen"},
    {4, 5, 0, "Steuern"},
    {4, 5, 1, "Steuern vom Einkommen"},
    {9, 0, 0, "Abschlusskonten"},
    {9, 1, 1, "Eröffnungs- und Schlussbilanz"},
};

struct AbrPos
{
    int p1, p2;
    const char *text;
};

// Owners' statement after ÖNORM A4000; level 2 = 0 is the heading of a group.
const std::vector<AbrPos> abrPositionen {
    {1, 0, "I. Einnahmen"},
    {1, 1, "Vorschreibung Bewirtschaftungskosten"},
    {1, 2, "Vorschreibung Rücklage"},
    {1, 3, "Sonstige Einnahmen"},
    {1, 4, "Zinserträge Rücklage"},
    {2, 0, "II. Ausgaben Bewirtschaftung"},
    {2, 1, "Wasser und Abwasser"},
    {2, 2, "Müllabfuhr"},
    {2, 3, "Rauchfangkehrer"},
    {2, 4, "Kanalräumung"},
    {2, 5, "Schädlingsbekämpfung"},
    {2, 6, "Allgemeinstrom"},
    {2, 7, "Versicherungen"},
    {2, 8, "Verwaltungshonorar"},
    {2, 9, "Hausbetreuung"},
    {2, 10, "Grundsteuer"},
    {2, 11, "Liftbetrieb"},
    {3, 0, "III. Ausgaben Erhaltung"},
    {3, 1, "laufende Instandhaltung"},
    {3, 2, "Großreparaturen"},
    {4, 0, "IV. Heizung und Warmwasser"},
    {4, 1, "Energiekosten Heizung"},
    {4, 2, "Wartung und Messdienst"},
    {5, 0, "V. Rücklage"},
    {5, 1, "Zuführung Rücklage"},
    {5, 2, "Entnahme Rücklage"},
};

struct Schluessel
{
    int nummer;
    const char *kurz, *lang;
};

const std::vector<Schluessel> schluessel {
    {0, "", "keine Definition"},
    {1, "NFL", "Nutzfläche"},
    {2, "MEA", "Miteigentumsanteile (Nutzwerte)"},
    {3, "LIFT", "Nutzfläche ab 1. Stock (Lift)"},
    {4, "HZG", "beheizbare Nutzfläche"},
    {5, "WZ", "Wasserzähler nach Verbrauch"},
    {6, "GAR", "Garagenplätze"},
    {7, "EH", "Anzahl der Nutzungseinheiten"},
};

struct Block
{
    int pos;
    const char *text;
    int schluessel;
};

enum BlockNr { blkAllgemein = 1, blkLift, blkHeizung, blkWasser, blkGarage, blkRuecklage };

const std::vector<Block> bloecke {
    {blkAllgemein, "Betriebskosten allgemein", 1},
    {blkLift, "Liftkosten", 3},
    {blkHeizung, "Heizung und Warmwasser", 4},
    {blkWasser, "Wasser nach Verbrauch", 5},
    {blkGarage, "Garage", 6},
    {blkRuecklage, "Rücklage", 2},
};

void stammdatenAnlegen(Database &db)
{
    Einfueger bil(db, QStringLiteral("BilanzPos"));
    for (const BilPos &p : bilanzPositionen) {
        QVariantList z = bil.neu();
        bil.set(z, "BilPosAktPass", p.aktPass);
        bil.set(z, "BilPosABC", QString::fromUtf8(p.abc));
        bil.set(z, "BilPosRöm", QString::fromUtf8(p.roem));
        bil.set(z, "BilPosArab", QString::fromUtf8(p.arab));
        bil.set(z, "BilPosABCklein", QString::fromUtf8(p.klein));
        bil.set(z, "BilPosText", QString::fromUtf8(p.text));
        bil.einfuegen(z);
    }
    Einfueger zl7(db, QStringLiteral("BilanzPosZL7"));
    for (const Zl7Pos &p : zl7Positionen) {
        QVariantList z = zl7.neu();
        zl7.set(z, "BilZl7Pos1", p.p1);
        zl7.set(z, "BilZl7Pos2", p.p2);
        zl7.set(z, "BilZl7Pos3", p.p3);
        zl7.set(z, "BilZl7PosText", QString::fromUtf8(p.text));
        zl7.einfuegen(z);
    }
    Einfueger abr(db, QStringLiteral("AbrPosBkAbr"));
    for (const AbrPos &p : abrPositionen) {
        QVariantList z = abr.neu();
        abr.set(z, "AbrPosBkPos1", p.p1);
        abr.set(z, "AbrPosBkPos2", p.p2);
        abr.set(z, "AbrPosBkPosText", QString::fromUtf8(p.text));
        abr.einfuegen(z);
    }
    Einfueger blk(db, QStringLiteral("AbrPosBkBlöcke"));
    for (const Block &b : bloecke) {
        QVariantList z = blk.neu();
        blk.set(z, "BkBlockPos", b.pos);
        blk.set(z, "BkBlockText", QString::fromUtf8(b.text));
        blk.set(z, "BkBlockSchlPos", b.schluessel);
        blk.einfuegen(z);
    }
    Einfueger asl(db, QStringLiteral("AllgSchluesselDaten"));
    for (const Schluessel &s : schluessel) {
        QVariantList z = asl.neu();
        asl.set(z, "SchlNummer", s.nummer);
        asl.set(z, "SchlKurzbezeich", QString::fromUtf8(s.kurz));
        asl.set(z, "SchlLangBezeich", QString::fromUtf8(s.lang));
        asl.set(z, "SchlAbDatum", QDate(1900, 1, 1));
        asl.set(z, "SchlBisDatum", QDate(2099, 12, 31));
        asl.einfuegen(z);
    }
}

// ---------------------------------------------------------------------------------------------
// Accounts

// Closing kinds (KontoAbschlArt).
enum Abschluss { abKeine = 0, abErfolg = 1, abBestand = 2, abGuv = 3, abSbk = 4, abEbk = 5 };
// VAT pre-return codes (KontoVoranmPos) from 2003 on.
enum Voranm { vaKeine = 0, vaUmsatz20 = 22, vaUmsatz10 = 29, vaVorsteuer = 60, vaSammel = 99 };
// Pre-tax return codes (KontoPVAKz).
enum Pva {
    pvaKeine = 0,
    pvaAufwand = 1,
    pvaErloes = 2,
    pvaAktiva = 3,
    pvaPassiva = 4,
    pvaSammel = 5
};

struct Bil
{
    int aktPass = 0;
    const char *abc = "", *roem = "", *arab = "", *klein = "";
};

struct Zl7
{
    int p1 = 0, p2 = 0, p3 = 0;
};

// One office account. References name other office accounts by number.
struct Kanzleikonto
{
    const char *nr;
    const char *name;
    int typus;
    int abschluss;
    Bil bil;
    Zl7 zl7;
    int ustProz = 100; // 100 = no definition
    const char *ustKonto = "";
    int voranm = vaKeine;
    int pva = pvaKeine;
};

// In reference order: every account named by another one comes first.
const std::vector<Kanzleikonto> kanzleikonten {
    {"999998", "Internes Verrechnungskonto", 0, abKeine, {}, {}},
    {"9800", "Eröffnungsbilanzkonto", 0, abEbk, {}, {9, 1, 1}},
    {"9850", "Schlussbilanzkonto", 0, abSbk, {}, {9, 1, 1}},
    {"9890", "Gewinn- und Verlustrechnung", 0, abGuv, {}, {9, 1, 1}},
    {"2500",
     "Vorsteuer 20%",
     0,
     abBestand,
     {1, "B", "II", "4"},
     {1, 2, 1},
     100,
     "",
     vaVorsteuer,
     pvaSammel},
    {"2510",
     "Vorsteuer 10%",
     0,
     abBestand,
     {1, "B", "II", "4"},
     {1, 2, 1},
     100,
     "",
     vaVorsteuer,
     pvaSammel},
    {"3500",
     "Umsatzsteuer 20%",
     0,
     abBestand,
     {2, "C", "", "8", "a"},
     {2, 3, 3},
     100,
     "",
     vaSammel,
     pvaSammel},
    {"3510",
     "Umsatzsteuer 10%",
     0,
     abBestand,
     {2, "C", "", "8", "a"},
     {2, 3, 3},
     100,
     "",
     vaSammel,
     pvaSammel},
    {"3520", "Umsatzsteuer-Zahllast Finanzamt", 0, abBestand, {2, "C", "", "8", "a"}, {2, 3, 3}},
    {"0010",
     "EDV-Software und Lizenzen",
     0,
     abBestand,
     {1, "A", "I", "1"},
     {1, 1, 1},
     100,
     "",
     vaKeine,
     pvaAktiva},
    {"0200",
     "Mietereinbauten Kanzleiräume",
     0,
     abBestand,
     {1, "A", "II", "1"},
     {1, 1, 2},
     100,
     "",
     vaKeine,
     pvaAktiva},
    {"0620",
     "EDV-Anlagen und Büromaschinen",
     0,
     abBestand,
     {1, "A", "II", "3"},
     {1, 1, 2},
     100,
     "",
     vaKeine,
     pvaAktiva},
    {"0660",
     "Büroeinrichtung",
     0,
     abBestand,
     {1, "A", "II", "3"},
     {1, 1, 2},
     100,
     "",
     vaKeine,
     pvaAktiva},
    {"0630",
     "Firmen-PKW",
     0,
     abBestand,
     {1, "A", "II", "3"},
     {1, 1, 2},
     100,
     "",
     vaKeine,
     pvaAktiva},
    {"0900", "Wertpapiere des Anlagevermögens", 0, abBestand, {1, "A", "III", "5"}, {1, 1, 3}},
    {"0950", "Kautionen Kanzleiräume", 0, abBestand, {1, "A", "III", "6"}, {1, 1, 3}},
    {"2000", "Forderungen Verwaltungshonorare", 0, abBestand, {1, "B", "II", "1"}, {1, 2, 1}},
    {"2300", "Sonstige Forderungen", 0, abBestand, {1, "B", "II", "4"}, {1, 2, 1}},
    {"2700", "Kassa", 0, abBestand, {1, "B", "IV"}, {1, 2, 2}},
    {"2800", "Bank Geschäftskonto", 0, abBestand, {1, "B", "IV"}, {1, 2, 2}},
    {"2810", "Bank Sparkonto", 0, abBestand, {1, "B", "IV"}, {1, 2, 2}},
    {"2850", "Treuhandkonten der Objekte", 2, abBestand, {1, "B", "IV"}, {1, 2, 2}},
    {"2900", "Aktive Rechnungsabgrenzung", 0, abBestand, {1, "C"}, {1, 2, 3}},
    {"9000", "Stammkapital", 0, abBestand, {2, "A", "I"}, {2, 1, 1}, 100, "", vaKeine, pvaPassiva},
    {"9300", "Gewinnvortrag", 0, abBestand, {2, "A", "IV", "", "a"}, {2, 1, 2}},
    {"3000", "Rückstellung für Abfertigungen", 0, abBestand, {2, "B", "", "1"}, {2, 2, 1}},
    {"3030", "Steuerrückstellungen", 0, abBestand, {2, "B", "", "3"}, {2, 2, 1}},
    {"3040", "Sonstige Rückstellungen", 0, abBestand, {2, "B", "", "4"}, {2, 2, 1}},
    {"3100", "Bankverbindlichkeiten", 0, abBestand, {2, "C", "", "2"}, {2, 3, 1}},
    {"3300", "Lieferverbindlichkeiten", 0, abBestand, {2, "C", "", "4"}, {2, 3, 2}},
    {"3540", "Verrechnung Finanzamt", 0, abBestand, {2, "C", "", "8", "a"}, {2, 3, 3}},
    {"3600",
     "Verbindlichkeiten Sozialversicherung",
     0,
     abBestand,
     {2, "C", "", "8", "b"},
     {2, 3, 4}},
    {"3610",
     "Verbindlichkeiten Gemeinde (Kommunalsteuer)",
     0,
     abBestand,
     {2, "C", "", "8", "a"},
     {2, 3, 3}},
    {"3900", "Passive Rechnungsabgrenzung", 0, abBestand, {2, "D"}, {2, 3, 5}},
    {"4000",
     "Verwaltungshonorare Eigentümergemeinschaften",
     0,
     abErfolg,
     {3, "", "", "1"},
     {3, 1, 1},
     20,
     "3500",
     vaUmsatz20,
     pvaErloes},
    {"4010",
     "Verwaltungshonorare Zinshäuser",
     0,
     abErfolg,
     {3, "", "", "1"},
     {3, 1, 1},
     20,
     "3500",
     vaUmsatz20,
     pvaErloes},
    {"4020",
     "Sonderhonorare Sanierungsbetreuung",
     0,
     abErfolg,
     {3, "", "", "1"},
     {3, 1, 2},
     20,
     "3500",
     vaUmsatz20,
     pvaErloes},
    {"4100",
     "Honorare Vermietung und Mietvertragserrichtung",
     0,
     abErfolg,
     {3, "", "", "1"},
     {3, 1, 2},
     20,
     "3500",
     vaUmsatz20,
     pvaErloes},
    {"4400", "Mahnspesen und Kostenersätze", 0, abErfolg, {3, "", "", "4", "c"}, {3, 2, 1}, 0},
    {"4800",
     "Erträge Untervermietung Lagerraum",
     0,
     abErfolg,
     {3, "", "", "4", "c"},
     {3, 2, 1},
     10,
     "3510",
     vaUmsatz10,
     pvaErloes},
    {"4880", "Zinserträge Bankguthaben", 0, abErfolg, {3, "", "", "11"}, {3, 2, 1}},
    {"5000",
     "Büromaterial",
     0,
     abErfolg,
     {3, "", "", "8", "b"},
     {4, 3, 2},
     20,
     "2500",
     vaKeine,
     pvaAufwand},
    {"6200",
     "Gehälter",
     0,
     abErfolg,
     {3, "", "", "6", "b"},
     {4, 1, 1},
     100,
     "",
     vaKeine,
     pvaAufwand},
    {"6500", "Gesetzlicher Sozialaufwand", 0, abErfolg, {3, "", "", "6", "c"}, {4, 1, 1}},
    {"6600",
     "Kommunalsteuer und Dienstgeberbeitrag",
     0,
     abErfolg,
     {3, "", "", "6", "c"},
     {4, 1, 1}},
    {"7000", "Abschreibungen Sachanlagen", 0, abErfolg, {3, "", "", "7", "a"}, {4, 2, 1}},
    {"7300",
     "Telefon und Internet",
     0,
     abErfolg,
     {3, "", "", "8", "b"},
     {4, 3, 2},
     20,
     "2500",
     vaKeine,
     pvaAufwand},
    {"7320", "PKW-Betriebskosten", 0, abErfolg, {3, "", "", "8", "b"}, {4, 3, 3}, 20, "2500"},
    {"7380", "Porto", 0, abErfolg, {3, "", "", "8", "b"}, {4, 3, 2}, 0},
    {"7400",
     "Miete Kanzleiräume",
     0,
     abErfolg,
     {3, "", "", "8", "b"},
     {4, 3, 1},
     20,
     "2500",
     vaKeine,
     pvaAufwand},
    {"7410",
     "Betriebskosten Kanzleiräume",
     0,
     abErfolg,
     {3, "", "", "8", "b"},
     {4, 3, 1},
     10,
     "2510",
     vaKeine,
     pvaAufwand},
    {"7650", "Fachliteratur", 0, abErfolg, {3, "", "", "8", "b"}, {4, 3, 2}, 10, "2510"},
    {"7700", "Versicherungen", 0, abErfolg, {3, "", "", "8", "b"}, {4, 3, 2}, 0},
    {"7750",
     "Rechts- und Beratungsaufwand",
     0,
     abErfolg,
     {3, "", "", "8", "b"},
     {4, 3, 2},
     20,
     "2500",
     vaKeine,
     pvaAufwand},
    {"7770", "Aus- und Fortbildung", 0, abErfolg, {3, "", "", "8", "b"}, {4, 3, 2}, 20, "2500"},
    {"7790", "Spesen des Geldverkehrs", 0, abErfolg, {3, "", "", "8", "b"}, {4, 4, 1}},
    {"8280", "Zinsaufwand Bankkredit", 0, abErfolg, {3, "", "", "15"}, {4, 4, 1}},
    {"8500", "Körperschaftsteuer", 0, abErfolg, {3, "", "", "18"}, {4, 5, 1}},
};

enum class Objektart { Zinshaus, Eigentum };

struct Objekt
{
    int nr;
    const char *name;
};

const std::vector<Objekt> demoObjekte {
    {1, "Wien 3, Landstraßer Hauptstraße 112"},
    {2, "Wien 10, Quellenstraße 48"},
    {3, "Wien 16, Thaliastraße 75"},
    {4, "Wien 22, Wagramer Straße 140"},
    {5, "Wien 5, Schönbrunner Straße 31"},
    {6, "Mödling, Enzersdorfer Straße 9"},
    {7, "Wien 15, Märzstraße 22"},
    {8, "Klosterneuburg, Wiener Straße 67"},
};

// Objects with an odd number are rent houses (tenants' operating-cost statement), the others
// owner communities (statement after ÖNORM A4000).
Objektart objektart(int objNr)
{
    return objNr % 2 == 1 ? Objektart::Zinshaus : Objektart::Eigentum;
}

// Account number of the property account `vorlage` (its index) with the chart code `code`:
// properties 1 to 9 use their digit before the four-digit code, further ones run through the
// six-digit numbers from 100000.
QString objektKontoNr(int objNr, int vorlage, const char *code)
{
    if (objNr <= 9)
        return QString::number(objNr) + QString::fromLatin1(code);
    return QString::number(100000 + (objNr - 10) * 100 + vorlage);
}

// Number of another account of the same property, by its chart code.
using NrFn = std::function<QString(const char *)>;

struct Objektvorlage
{
    const char *code;
    const char *name;
    // Fills the definitions.
    void (*definieren)(QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr);
};

void bestand(QVariantList &z, const Einfueger &e, const NrFn &nr)
{
    e.set(z, "KontoAbschlArt", abBestand);
    e.set(z, "KontoSbkGuvKontoNr", nr("9850"));
    e.set(z, "KontoEbkKontoNr", nr("9800"));
}

void erfolg(QVariantList &z, const Einfueger &e, const NrFn &nr)
{
    e.set(z, "KontoAbschlArt", abErfolg);
    e.set(z, "KontoSbkGuvKontoNr", nr("9890"));
}

void ust(QVariantList &z, const Einfueger &e, int proz, const QString &konto, int voranm)
{
    e.set(z, "KontoUstProz", proz);
    e.set(z, "KontoUstKtoNr", konto);
    e.set(z, "KontoVoranmPos", voranm);
}

// An account of the operating-cost statement; ÖNORM positions only for owner communities.
void bk(QVariantList &z, const Einfueger &e, Objektart art, int einnAusg, int block, int schl,
        int abrUst, int verdicht, int oen1, int oen2)
{
    e.set(z, "KontoBkENAbrDef", art == Objektart::Zinshaus ? 1 : 2);
    e.set(z, "KontoBkEinnAusgPos", einnAusg);
    e.set(z, "KontoBkBlockPos", block);
    e.set(z, "KontoAbrSchlPos", schl);
    e.set(z, "KontoAbrUstProz", abrUst);
    e.set(z, "KontoBkAbrVerdichtKz", verdicht);
    if (art == Objektart::Eigentum) {
        e.set(z, "KontoÖNORMAbrPos_I_II_III", oen1);
        e.set(z, "KontoÖNORMAbrPos_ABC", oen2);
        e.set(z, "KontoÖNORMAbrBlockPos", block);
    }
}

// Expense of the operating costs with input tax `proz` (0 = none).
void aufwand(QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr, int proz,
             int block, int schl, int verdicht, int oen2)
{
    erfolg(z, e, nr);
    ust(z, e, proz, proz > 0 ? nr("2500") : QString(), vaKeine);
    e.set(z, "KontoPVAKz", pvaAufwand);
    bk(z, e, art, 1, block, schl, 99, verdicht, 2, oen2);
}

const std::vector<Objektvorlage> objektvorlagen {
    {"9800", "Eröffnungsbilanzkonto",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &) {
         e.set(z, "KontoAbschlArt", abEbk);
     }},
    {"9850", "Schlussbilanzkonto",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &) {
         e.set(z, "KontoAbschlArt", abSbk);
     }},
    {"9890", "Ergebnisrechnung",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &) {
         e.set(z, "KontoAbschlArt", abGuv);
     }},
    {"3500", "Umsatzsteuer 20%",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
         e.set(z, "KontoVoranmPos", vaSammel);
         e.set(z, "KontoPVAKz", pvaSammel);
     }},
    {"3510", "Umsatzsteuer 10%",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
         e.set(z, "KontoVoranmPos", vaSammel);
         e.set(z, "KontoPVAKz", pvaSammel);
     }},
    {"2500", "Vorsteuer",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
         e.set(z, "KontoVoranmPos", vaVorsteuer);
         e.set(z, "KontoPVAKz", pvaSammel);
     }},
    {"2800", "Hausbankkonto",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
     }},
    {"2000", "Forderungen Mieter und Eigentümer",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
     }},
    {"3300", "Verbindlichkeiten Lieferanten",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         bestand(z, e, nr);
     }},
    {"3900", "Hauptmietzinsreserve|Rücklage",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         bestand(z, e, nr);
         if (art == Objektart::Eigentum)
             e.set(z, "KontoÖNORMAbrKontenArt", 1);
     }},
    {"4000", "Hauptmietzins Wohnungen|Vorschreibung Bewirtschaftung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 10, nr("3510"), vaUmsatz10);
         e.set(z, "KontoPVAKz", pvaErloes);
         if (art == Objektart::Zinshaus) {
             e.set(z, "KontoHmzresPos", 1);
             e.set(z, "KontoHmzresVerdichtKz", 2);
         } else {
             bk(z, e, art, 2, blkAllgemein, 2, 910, 1, 1, 1);
         }
     }},
    {"4010", "Hauptmietzins Geschäftslokale|Vorschreibung Rücklage",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         if (art == Objektart::Zinshaus) {
             ust(z, e, 20, nr("3500"), vaUmsatz20);
             e.set(z, "KontoHmzresPos", 1);
             e.set(z, "KontoHmzresVerdichtKz", 2);
         } else {
             ust(z, e, 0, QString(), vaKeine);
             e.set(z, "KontoBeiblPos", 1);
             e.set(z, "KontoBeiblVerdichtKz", 1);
             bk(z, e, art, 2, blkRuecklage, 2, 900, 1, 1, 2);
         }
         e.set(z, "KontoPVAKz", pvaErloes);
     }},
    {"4100", "Betriebskosten-Akonto Wohnungen",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 10, nr("3510"), vaUmsatz10);
         e.set(z, "KontoPVAKz", pvaErloes);
         e.set(z, "KontoBkEinnUstProz", 10);
         bk(z, e, art, 2, blkAllgemein, 1, 910, 1, 1, 1);
     }},
    {"4110", "Betriebskosten-Akonto Geschäftslokale",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("3500"), vaUmsatz20);
         e.set(z, "KontoPVAKz", pvaErloes);
         e.set(z, "KontoBkEinnUstProz", 20);
         bk(z, e, art, 2, blkAllgemein, 1, 920, 1, 1, 1);
     }},
    {"4200", "Heizkosten-Akonto",
     [](QVariantList &z, const Einfueger &e, Objektart, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("3500"), vaUmsatz20);
         e.set(z, "KontoPVAKz", pvaErloes);
         e.set(z, "KontoHeEinnAusgPos", 1);
         e.set(z, "KontoHeAbrVerdichtKz", 1);
     }},
    {"4300", "Lift-Akonto",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 10, nr("3510"), vaUmsatz10);
         e.set(z, "KontoPVAKz", pvaErloes);
         bk(z, e, art, 2, blkLift, 3, 910, 1, 1, 1);
     }},
    {"4800", "Zinserträge Objektkonto",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         if (art == Objektart::Eigentum) {
             e.set(z, "KontoÖNORMAbrPos_I_II_III", 1);
             e.set(z, "KontoÖNORMAbrPos_ABC", 4);
             e.set(z, "KontoBkBlockPos", blkRuecklage);
             e.set(z, "KontoAbrUstProz", 0);
             e.set(z, "KontoBeiblPos", 3);
         }
     }},
    {"5000", "Wasser und Abwasser",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 10, blkWasser, 5, 2, 1);
     }},
    {"5010", "Müllabfuhr",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 10, blkAllgemein, 1, 1, 2);
     }},
    {"5020", "Rauchfangkehrer",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 1, 0, 3);
     }},
    {"5030", "Kanalräumung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 1, 0, 4);
     }},
    {"5040", "Schädlingsbekämpfung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 1, 0, 5);
     }},
    {"5050", "Allgemeinstrom",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 1, 3, 6);
     }},
    {"5060", "Gebäudeversicherung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 0, blkAllgemein, 1, 1, 7);
     }},
    {"5070", "Verwaltungshonorar",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 7, 1, 8);
     }},
    {"5080", "Hausbetreuung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkAllgemein, 1, 2, 9);
     }},
    {"5090", "Grundsteuer",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 0, blkAllgemein, 1, 5, 10);
     }},
    {"5100", "Liftbetrieb und Wartung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         aufwand(z, e, art, nr, 20, blkLift, 3, 0, 11);
     }},
    {"5200", "Heizkosten Energie",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("2500"), vaKeine);
         e.set(z, "KontoPVAKz", pvaAufwand);
         e.set(z, "KontoHeEinnAusgPos", 2);
         e.set(z, "KontoHeAbrVerdichtKz", 2);
         if (art == Objektart::Eigentum)
             bk(z, e, art, 1, blkHeizung, 4, 98, 2, 4, 1);
     }},
    {"5210", "Wartung Heizung und Messdienst",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("2500"), vaKeine);
         e.set(z, "KontoPVAKz", pvaAufwand);
         e.set(z, "KontoHeEinnAusgPos", 2);
         e.set(z, "KontoHeAbrVerdichtKz", 1);
         if (art == Objektart::Eigentum)
             bk(z, e, art, 1, blkHeizung, 4, 98, 0, 4, 2);
     }},
    {"5300", "Laufende Instandhaltung",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("2500"), vaKeine);
         e.set(z, "KontoPVAKz", pvaAufwand);
         if (art == Objektart::Zinshaus) {
             e.set(z, "KontoHmzresPos", 3);
         } else {
             e.set(z, "KontoBeiblPos", 8);
             e.set(z, "KontoÖNORMAbrPos_I_II_III", 3);
             e.set(z, "KontoÖNORMAbrPos_ABC", 1);
             e.set(z, "KontoBkBlockPos", blkRuecklage);
             e.set(z, "KontoAbrUstProz", 20);
         }
     }},
    {"5310", "Erhaltungsarbeiten und Großreparaturen",
     [](QVariantList &z, const Einfueger &e, Objektart art, const NrFn &nr) {
         erfolg(z, e, nr);
         ust(z, e, 20, nr("2500"), vaKeine);
         e.set(z, "KontoPVAKz", pvaAufwand);
         if (art == Objektart::Zinshaus) {
             e.set(z, "KontoHmzresPos", 4);
             e.set(z, "KontoErhbeitrPos", 1);
         } else {
             e.set(z, "KontoBeiblPos", 6);
             e.set(z, "KontoÖNORMAbrPos_I_II_III", 3);
             e.set(z, "KontoÖNORMAbrPos_ABC", 2);
             e.set(z, "KontoBkBlockPos", blkRuecklage);
             e.set(z, "KontoAbrUstProz", 20);
         }
     }},
};

QString objektKontoNrFuer(int objNr, const char *code)
{
    for (std::size_t i = 0; i < objektvorlagen.size(); ++i) {
        if (qstrcmp(objektvorlagen[i].code, code) == 0)
            return objektKontoNr(objNr, int(i), code);
    }
    throw std::logic_error(std::string("unbekannter Kontocode ") + code);
}

struct Kontoplan
{
    std::vector<QVariantList> zeilen;
    // Property of each row (0 = office).
    std::vector<int> objekt;
};

QVariantList kanzleiZeile(const Einfueger &e, const Kanzleikonto &k, int jahr)
{
    QVariantList z = e.neu();
    e.set(z, "KontoNr", QString::fromLatin1(k.nr));
    e.set(z, "KontoJJ", jahr);
    e.set(z, "KontoBezeichnung", QString::fromUtf8(k.name));
    e.set(z, "KontoTypus", k.typus);
    e.set(z, "KontoAbschlArt", k.abschluss);
    if (k.abschluss == abBestand) {
        e.set(z, "KontoSbkGuvKontoNr", QStringLiteral("9850"));
        e.set(z, "KontoEbkKontoNr", QStringLiteral("9800"));
    } else if (k.abschluss == abErfolg) {
        e.set(z, "KontoSbkGuvKontoNr", QStringLiteral("9890"));
    }
    if (k.bil.aktPass != 0) {
        e.set(z, "KontoBilPosAktPass", k.bil.aktPass);
        e.set(z, "KontoBilPosABC", QString::fromLatin1(k.bil.abc));
        e.set(z, "KontoBilPosRöm", QString::fromLatin1(k.bil.roem));
        e.set(z, "KontoBilPosArab", QString::fromLatin1(k.bil.arab));
        e.set(z, "KontoBilPosABCklein", QString::fromLatin1(k.bil.klein));
    }
    e.set(z, "KontoPos1", k.zl7.p1);
    e.set(z, "KontoPos2", k.zl7.p2);
    e.set(z, "KontoPos3", k.zl7.p3);
    ust(z, e, k.ustProz, QString::fromLatin1(k.ustKonto), k.voranm);
    e.set(z, "KontoPVAKz", k.pva);
    e.set(z, "KontoSachKtNr", QString::fromLatin1(k.nr));
    return z;
}

QVariantList objektZeile(const Einfueger &e, int objNr, const QString &objName, int vorlage,
                         int jahr)
{
    const Objektvorlage &v = objektvorlagen[vorlage];
    const NrFn nr = [objNr](const char *code) {
        return objektKontoNrFuer(objNr, code);
    };
    QVariantList z = e.neu();
    e.set(z, "KontoNr", objektKontoNr(objNr, vorlage, v.code));
    e.set(z, "KontoJJ", jahr);
    // "rent house name|owner community name" where the two differ.
    const int teil = objektart(objNr) == Objektart::Zinshaus ? 0 : -1;
    const QString name = QString::fromUtf8(v.name).section(QLatin1Char('|'), teil, teil);
    e.set(z, "KontoBezeichnung", name + QStringLiteral(" (Obj. %1)").arg(objNr));
    e.set(z, "KontoAnmerkung1", objName);
    e.set(z, "KontoTypus", 1);
    e.set(z, "KontoSachKtNr", QString::fromLatin1(v.code));
    v.definieren(z, e, objektart(objNr), nr);
    return z;
}

QString objektName(int objNr)
{
    for (const Objekt &o : demoObjekte) {
        if (o.nr == objNr)
            return QString::fromUtf8(o.name);
    }
    return QStringLiteral("Objekt %1").arg(objNr);
}

// The accounts of a year: the office, then property after property, cut at `anzahl`.
Kontoplan kontoplan(const Einfueger &e, int jahr, int anzahl)
{
    Kontoplan plan;
    for (const Kanzleikonto &k : kanzleikonten) {
        if (int(plan.zeilen.size()) >= anzahl)
            return plan;
        plan.zeilen.push_back(kanzleiZeile(e, k, jahr));
        plan.objekt.push_back(0);
    }
    for (int objNr = 1; int(plan.zeilen.size()) < anzahl; ++objNr) {
        const QString name = objektName(objNr);
        for (int v = 0; v < int(objektvorlagen.size()) && int(plan.zeilen.size()) < anzahl; ++v) {
            plan.zeilen.push_back(objektZeile(e, objNr, name, v, jahr));
            plan.objekt.push_back(objNr);
        }
    }
    return plan;
}

Kontoplan kontenAnlegen(Database &db, int jahr, int anzahl)
{
    Einfueger e(db, QStringLiteral("ObjKanzleiKontenstamm"));
    Kontoplan plan = kontoplan(e, jahr, anzahl);
    for (const QVariantList &z : plan.zeilen)
        e.einfuegen(z);
    return plan;
}

int demoKontenAnzahl()
{
    return int(kanzleikonten.size() + demoObjekte.size() * objektvorlagen.size());
}

// ---------------------------------------------------------------------------------------------
// Balances and creditors

void saldenAnlegen(Database &db, const Kontoplan &plan, int jahr, Zufall &zufall)
{
    Einfueger e(db, QStringLiteral("ObjKanzleiSalden"));
    Einfueger k(db, QStringLiteral("ObjKanzleiKontenstamm"));
    for (std::size_t i = 0; i < plan.zeilen.size(); ++i) {
        // Some accounts stay without balances, so that they can be deleted in the demo.
        if (!zufall.prozent(80))
            continue;
        const QString nr = k.get(plan.zeilen[i], "KontoNr").toString();
        // The clearing account and the subdivided trust account carry one row per property.
        const bool jeObjekt
            = nr == QLatin1String("999998") || k.get(plan.zeilen[i], "KontoTypus").toInt() == 2;
        std::vector<int> objekte;
        if (jeObjekt) {
            for (const Objekt &o : demoObjekte)
                objekte.push_back(o.nr);
        } else {
            objekte.push_back(plan.objekt[i]);
        }
        for (int objNr : objekte) {
            QVariantList z = e.neu();
            e.set(z, "SSObjNr", objNr);
            // Opening balance only, no postings yet, for about one row in six.
            const bool gebucht = zufall.prozent(83);
            e.set(z, "SSBuNr", gebucht ? zufall.zahl(1, 480) : 0);
            e.set(z, "SSJJ", jahr);
            e.set(z, "SSKontoNr", nr);
            e.set(z, "SSSaldoVortrag", zufall.prozent(50) ? zufall.betrag(-20000, 60000) : 0.0);
            e.set(z, "SSSollSumme", gebucht ? zufall.betrag(0, 85000) : 0.0);
            e.set(z, "SSHabenSumme", gebucht ? zufall.betrag(0, 85000) : 0.0);
            e.einfuegen(z);
        }
    }
}

struct Kreditor
{
    int nr;
    const char *name;
    int typus; // 0 office, 1 property
    const char *code; // expense account (office number, or property chart code)
    int ustProz;
    int rechnungenJeJahr; // 0 = no postings (can be deleted)
};

const std::vector<Kreditor> kreditorenListe {
    {33001, "Hausbetreuung Novak GmbH", 1, "5080", 20, 12},
    {33002, "Rauchfangkehrermeister Josef Gruber", 1, "5020", 20, 2},
    {33003, "Wasserwerke Wienerwald GmbH", 1, "5000", 10, 4},
    {33004, "Donauland Entsorgung GmbH", 1, "5010", 10, 4},
    {33005, "Kanalservice Pichler & Söhne OG", 1, "5030", 20, 1},
    {33006, "Schädlingsbekämpfung Hofer KG", 1, "5040", 20, 1},
    {33007, "Stromversorgung Ostregion AG", 1, "5050", 20, 6},
    {33008, "Donau-Alpen Versicherung AG", 1, "5060", 0, 1},
    {33009, "Liftservice Steiner GmbH", 1, "5100", 20, 4},
    {33010, "Wärmeservice Brunner Heizungstechnik GmbH", 1, "5210", 20, 2},
    {33011, "Fernwärme Simmering-Nord GmbH", 1, "5200", 20, 6},
    {33012, "Baumeister Hubert Wallner GmbH", 1, "5310", 20, 2},
    {33013, "Elektro Moser OG", 1, "5300", 20, 3},
    {33014, "Installateur Aigner GmbH", 1, "5300", 20, 3},
    {33015, "Gärtnerei Lindner e.U.", 1, "5080", 20, 0},
    {33016, "Büroprofi Papierhandel GmbH", 0, "5000", 20, 6},
    {33017, "Alpentel Kommunikation GmbH", 0, "7300", 20, 12},
    {33018, "Steuerberatung Mag. Eder & Partner", 0, "7750", 20, 4},
    {33019, "Bürohaus Landstraße Vermietungs GmbH", 0, "7400", 20, 12},
    {33020, "EDV-Service Kovac e.U.", 0, "7750", 20, 0},
    {33021, "Malerei und Anstrich Kraus GmbH", 1, "5300", 20, 1},
};

void kreditorenAnlegen(Database &db)
{
    Einfueger e(db, QStringLiteral("KreditorenKontenstamm"));
    for (const Kreditor &k : kreditorenListe) {
        QVariantList z = e.neu();
        e.set(z, "KrKontoNr", k.nr);
        e.set(z, "KrKontoBezeichnung", QString::fromUtf8(k.name));
        e.set(z, "KrKontoTypus", QString::number(k.typus));
        e.set(z, "KrStornoDatum", 0);
        e.einfuegen(z);
    }
}

void kreditorenBuchungenAnlegen(Database &db, int jahr, Zufall &zufall)
{
    Einfueger b(db, QStringLiteral("KreditorenBuchungen"));
    Einfueger s(db, QStringLiteral("KreditorenSalden"));
    int beleg = 0;
    for (const Kreditor &k : kreditorenListe) {
        if (k.rechnungenJeJahr == 0)
            continue;
        // Property suppliers work for some of the properties; the office's for the office.
        std::vector<int> objekte;
        if (k.typus == 0) {
            objekte.push_back(0);
        } else {
            for (const Objekt &o : demoObjekte) {
                if (zufall.prozent(60))
                    objekte.push_back(o.nr);
            }
            if (objekte.empty())
                objekte.push_back(demoObjekte.front().nr);
        }
        double haben = 0;
        for (int objNr : objekte) {
            const QString sachKonto
                = objNr == 0 ? QString::fromLatin1(k.code) : objektKontoNrFuer(objNr, k.code);
            for (int r = 0; r < k.rechnungenJeJahr; ++r) {
                const int monat = 1 + r * 12 / k.rechnungenJeJahr;
                const double netto = zufall.betrag(40, 4800);
                const double brutto = std::round(netto * (100 + k.ustProz)) / 100.0;
                QVariantList z = b.neu();
                b.set(z, "KbKontoNr", k.nr);
                b.set(z, "KbObjNr", objNr);
                b.set(z, "KbJJ", jahr);
                b.set(z, "KbBuchDatum", QDate(jahr, monat, zufall.zahl(1, 28)));
                b.set(z, "KbBelegNr",
                      QStringLiteral("ER-%1-%2").arg(jahr).arg(++beleg, 4, 10, QLatin1Char('0')));
                b.set(z, "KbBuchText",
                      QStringLiteral("Rechnung %1/%2 %3")
                          .arg(monat, 2, 10, QLatin1Char('0'))
                          .arg(jahr)
                          .arg(QString::fromUtf8(k.name).section(QLatin1Char(' '), 0, 0)));
                b.set(z, "KbSachKontoNr", sachKonto);
                b.set(z, "KbUstProz", k.ustProz);
                b.set(z, "KbBetrag", brutto);
                b.einfuegen(z);
                haben += brutto;
            }
        }
        QVariantList z = s.neu();
        s.set(z, "KsKontoNr", k.nr);
        s.set(z, "KsJJ", jahr);
        s.set(z, "KsSaldoVortrag", zufall.prozent(40) ? -zufall.betrag(0, 3000) : 0.0);
        haben = std::round(haben * 100.0) / 100.0;
        s.set(z, "KsHabenSumme", haben);
        // Most invoices are paid within the year.
        s.set(z, "KsSollSumme", std::round(haben * zufall.zahl(80, 100)) / 100.0);
        s.einfuegen(z);
    }
}

bool tabelleLeer(Database &db, const QString &name)
{
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + name).toLongLong() == 0;
}

} // namespace

void demoDatenbankAnlegen(Database &db)
{
    Transaktion tx(db);
    platform::storage::schemaAnlegen(db);
    stammdatenAnlegen(db);
    kreditorenAnlegen(db);
    Zufall zufall(20250101);
    for (int jahr = demoErstesJahr; jahr <= demoLetztesJahr; ++jahr) {
        const Kontoplan plan = kontenAnlegen(db, jahr, demoKontenAnzahl());
        saldenAnlegen(db, plan, jahr, zufall);
        kreditorenBuchungenAnlegen(db, jahr, zufall);
    }
    tx.commit();
}

void jahrErzeugen(Database &db, int jahr, int anzahlKonten)
{
    if (anzahlKonten < 0) {
        throw platform::RuntimeError(platform::fehlernummer::IndexAusserhalb,
                                     QStringLiteral("Die Anzahl der Konten darf nicht negativ "
                                                    "sein."));
    }
    Transaktion tx(db);
    if (!db.hasTable(QStringLiteral("ObjKanzleiKontenstamm")))
        platform::storage::schemaAnlegen(db);
    if (tabelleLeer(db, QStringLiteral("BilanzPos")))
        stammdatenAnlegen(db);
    kontenAnlegen(db, jahr, anzahlKonten);
    tx.commit();
}

QString zusammenfassung(Database &db)
{
    QStringList zeilen;
    if (db.hasTable(QStringLiteral("ObjKanzleiKontenstamm"))) {
        QStringList jahre;
        auto c = db.query(QStringLiteral("SELECT KontoJJ, COUNT(*) FROM ObjKanzleiKontenstamm "
                                         "GROUP BY KontoJJ ORDER BY KontoJJ"));
        while (c->next())
            jahre << QStringLiteral("%1: %2").arg(c->ganzzahl(0)).arg(c->ganzzahl(1));
        zeilen << QStringLiteral("Konten je Buchungsjahr: ")
                + (jahre.isEmpty() ? QStringLiteral("keine") : jahre.join(QStringLiteral(", ")));
    }
    for (const auto &t : platform::storage::schemaKatalog()) {
        if (!db.hasTable(t.name)) {
            zeilen << QStringLiteral("%1: Tabelle fehlt").arg(t.name);
            continue;
        }
        const qint64 n = db.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + t.name).toLongLong();
        zeilen << QStringLiteral("%1: %2 %3")
                      .arg(t.name)
                      .arg(n)
                      .arg(n == 1 ? QStringLiteral("Zeile") : QStringLiteral("Zeilen"));
    }
    return zeilen.join(QLatin1Char('\n'));
}

} // namespace frame
