#include "jahr/Demodaten.h"

#include "jahr/Csv.h"
#include "jahr/Einfuegen.h"
#include "jahr/KontenCsv.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QFile>
#include <QHash>
#include <QSet>

using platform::RuntimeError;
using platform::storage::Database;
using platform::storage::Spalte;
using platform::storage::Spaltentyp;
using platform::storage::Transaktion;

namespace jahr {

namespace {

const QString Kontendatei = QStringLiteral(":/demo/konten.csv");

// The tables beside the accounts, in the order they are filled; each file has a header with the
// column names and rows in the order of the table's key (balance and posting rows get their ids
// in file order).
struct Tabellendatei
{
    const char *tabelle;
    const char *datei;
};
const Tabellendatei stammdateien[] = {
    {"BilanzPos", "BilanzPos.csv"},
    {"BilanzPosZL7", "BilanzPosZL7.csv"},
    {"AbrPosBkAbr", "AbrPosBkAbr.csv"},
    {"AbrPosBkBlöcke", "AbrPosBkBloecke.csv"},
    {"AllgSchluesselDaten", "AllgSchluesselDaten.csv"},
};
const Tabellendatei bewegungsdateien[] = {
    {"KreditorenKontenstamm", "KreditorenKontenstamm.csv"},
    {"ObjKanzleiSalden", "ObjKanzleiSalden.csv"},
    {"KreditorenBuchungen", "KreditorenBuchungen.csv"},
    {"KreditorenSalden", "KreditorenSalden.csv"},
};

[[noreturn]] void kaputt(const QString &datei, const QString &grund)
{
    throw RuntimeError(platform::fehlernummer::DateiNichtGefunden,
                       QStringLiteral("Die Demodaten %1 sind unbrauchbar: %2").arg(datei, grund));
}

// The typed rows of a CSV file of the resource, columns from its header line.
struct Tabelleninhalt
{
    QStringList spalten;
    std::vector<QVariantList> zeilen;
};

Tabelleninhalt lesen(const QString &tabelle, const QString &datei)
{
    QFile f(datei);
    if (!f.open(QIODevice::ReadOnly))
        kaputt(datei, f.errorString());
    const auto saetze = csvLesen(csvText(f.readAll()));
    const auto *t = platform::storage::tabelle(tabelle);
    if (saetze.empty() || !t)
        kaputt(datei, QStringLiteral("keine Kopfzeile"));
    Tabelleninhalt inhalt;
    std::vector<const Spalte *> spalten;
    for (const QString &name : saetze.front().felder) {
        const Spalte *s = t->spalte(name);
        if (!s)
            kaputt(datei, QStringLiteral("unbekanntes Feld %1").arg(name));
        spalten.push_back(s);
        inhalt.spalten << s->name;
    }
    for (size_t i = 1; i < saetze.size(); ++i) {
        const CsvSatz &satz = saetze[i];
        if (!satz.fehler.isEmpty() || satz.felder.size() != qsizetype(spalten.size()))
            kaputt(datei, QStringLiteral("Zeile %1").arg(satz.zeile));
        QVariantList zeile;
        for (size_t k = 0; k < spalten.size(); ++k) {
            const QString &text = satz.felder.at(qsizetype(k));
            const Spalte &s = *spalten[k];
            if (s.typ == Spaltentyp::Text || s.typ == Spaltentyp::Datum)
                zeile << (text.isEmpty() ? QStringLiteral("") : text);
            else if (text.isEmpty())
                zeile << s.anfangswert;
            else if (s.typ == Spaltentyp::Kommazahl)
                zeile << text.toDouble();
            else
                zeile << text.toLongLong();
        }
        inhalt.zeilen.push_back(std::move(zeile));
    }
    return inhalt;
}

void laden(Database &db, const Tabellendatei &d)
{
    const QString tabelle = QString::fromUtf8(d.tabelle);
    const Tabelleninhalt inhalt
        = lesen(tabelle, QStringLiteral(":/demo/") + QString::fromUtf8(d.datei));
    const QString sql = QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                            .arg(tabelle, inhalt.spalten.join(QStringLiteral(", ")),
                                 QStringList(inhalt.spalten.size(), QStringLiteral("?"))
                                     .join(QStringLiteral(", ")));
    for (const QVariantList &zeile : inhalt.zeilen)
        db.execute(sql, zeile);
}

void stammdatenLaden(Database &db)
{
    for (const Tabellendatei &d : stammdateien)
        laden(db, d);
}

// The demo's accounts as the template of generated years: the office's, and the two kinds of
// property (odd numbers rent houses, even ones owner communities) as properties 1 and 2 show
// them. Each list is in reference order.
class Kontenvorlage
{
public:
    Kontenvorlage()
    {
        const Tabelleninhalt inhalt = lesen(QStringLiteral("ObjKanzleiKontenstamm"), Kontendatei);
        m_spalten = QStringList {QStringLiteral("KontoJJ")} + inhalt.spalten;
        m_nr = int(inhalt.spalten.indexOf(QStringLiteral("KontoNr"))) + 1;
        m_name = int(inhalt.spalten.indexOf(QStringLiteral("KontoBezeichnung"))) + 1;
        m_anmerkung = int(inhalt.spalten.indexOf(QStringLiteral("KontoAnmerkung1"))) + 1;
        for (const char *v : {"KontoUstKtoNr", "KontoSbkGuvKontoNr", "KontoEbkKontoNr"})
            m_verweise << int(inhalt.spalten.indexOf(QString::fromLatin1(v))) + 1;
        const int typus = int(inhalt.spalten.indexOf(QStringLiteral("KontoTypus"))) + 1;
        std::vector<QVariantList> kanzlei, objekt[2];
        for (QVariantList zeile : inhalt.zeilen) {
            zeile.prepend(0);
            const QString nr = zeile.at(m_nr).toString();
            if (zeile.at(typus).toInt() != 1) {
                kanzlei.push_back(zeile);
                continue;
            }
            const int objNr = nr.left(1).toInt();
            if (objNr <= 2)
                objekt[objNr - 1].push_back(zeile);
            if (!m_objektNamen.contains(objNr))
                m_objektNamen.insert(objNr, zeile.at(m_anmerkung).toString());
        }
        m_kanzlei = nachVerweisen(std::move(kanzlei));
        for (int art = 0; art < 2; ++art) {
            m_objekt[art] = nachVerweisen(std::move(objekt[art]));
            for (int v = 0; v < int(m_objekt[art].size()); ++v)
                m_index[art].insert(m_objekt[art][v].at(m_nr).toString().mid(1), v);
        }
        if (m_kanzlei.empty() || m_objekt[0].empty() || m_objekt[1].empty())
            kaputt(Kontendatei, QStringLiteral("keine Kanzlei- oder Objektkonten"));
    }

    const QStringList &spalten() const { return m_spalten; }

    QVariantList zeile(qint64 i, int jahr) const
    {
        QVariantList z;
        if (i < qint64(m_kanzlei.size())) {
            z = m_kanzlei[size_t(i)];
        } else {
            const qint64 k = i - qint64(m_kanzlei.size());
            const int objNr = int(k / qint64(m_objekt[0].size())) + 1;
            const int art = objNr % 2 == 1 ? 0 : 1;
            const auto &vorlage = m_objekt[art];
            z = vorlage[size_t(k % qint64(vorlage.size()))];
            const auto nummer = [&](const QString &alt) {
                const QString code = alt.mid(1);
                if (objNr <= 9)
                    return QString::number(objNr) + code;
                return QString::number(100000 + (objNr - 10) * 100 + m_index[art].value(code));
            };
            z[m_nr] = nummer(z.at(m_nr).toString());
            for (int v : m_verweise) {
                if (!z.at(v).toString().isEmpty())
                    z[v] = nummer(z.at(v).toString());
            }
            QString name = z.at(m_name).toString();
            name.truncate(name.lastIndexOf(QStringLiteral(" (Obj. ")));
            z[m_name] = name + QStringLiteral(" (Obj. %1)").arg(objNr);
            z[m_anmerkung] = m_objektNamen.value(objNr, QStringLiteral("Objekt %1").arg(objNr));
        }
        z[0] = jahr;
        return z;
    }

private:
    // The accounts in an order where each comes after the accounts it names, "999998" first.
    std::vector<QVariantList> nachVerweisen(std::vector<QVariantList> offen) const
    {
        std::vector<QVariantList> fertig;
        QSet<QString> da, alle;
        for (const QVariantList &z : offen)
            alle.insert(z.at(m_nr).toString());
        const auto nehmen = [&](size_t i) {
            da.insert(offen[i].at(m_nr).toString());
            fertig.push_back(std::move(offen[i]));
            offen.erase(offen.begin() + qsizetype(i));
        };
        for (size_t i = 0; i < offen.size(); ++i) {
            if (offen[i].at(m_nr).toString() == QLatin1String("999998"))
                nehmen(i);
        }
        while (!offen.empty()) {
            const size_t vorher = offen.size();
            for (size_t i = 0; i < offen.size();) {
                const bool bereit = std::all_of(m_verweise.begin(), m_verweise.end(), [&](int v) {
                    const QString ziel = offen[i].at(v).toString();
                    return ziel.isEmpty() || da.contains(ziel) || !alle.contains(ziel);
                });
                if (bereit)
                    nehmen(i);
                else
                    ++i;
            }
            if (offen.size() == vorher)
                kaputt(Kontendatei, QStringLiteral("Konten verweisen im Kreis aufeinander"));
        }
        return fertig;
    }

    QStringList m_spalten;
    int m_nr = 0, m_name = 0, m_anmerkung = 0;
    QList<int> m_verweise;
    std::vector<QVariantList> m_kanzlei, m_objekt[2];
    QHash<QString, int> m_index[2]; // chart code -> place in the property's list
    QHash<int, QString> m_objektNamen;
};

bool tabelleLeer(Database &db, const QString &name)
{
    return db.scalar(QStringLiteral("SELECT COUNT(*) FROM ") + name).toLongLong() == 0;
}

} // namespace

void demoDatenbankAnlegen(Database &db)
{
    Transaktion tx(db);
    platform::storage::schemaAnlegen(db);
    stammdatenLaden(db);
    for (int jahr = demoErstesJahr; jahr <= demoLetztesJahr; ++jahr) {
        const ImportErgebnis e = importieren(db, jahr, Kontendatei, false);
        if (!e.geschrieben) {
            kaputt(Kontendatei, e.fehler.empty()
                                    ? QStringLiteral("nichts eingelesen")
                                    : QStringLiteral("Zeile %1, %2: %3")
                                          .arg(e.fehler.front().zeile)
                                          .arg(e.fehler.front().feld, e.fehler.front().meldung));
        }
    }
    for (const Tabellendatei &d : bewegungsdateien)
        laden(db, d);
    tx.commit();
}

void jahrErzeugen(Database &db, int jahr, int anzahlKonten)
{
    if (anzahlKonten < 0) {
        throw RuntimeError(platform::fehlernummer::IndexAusserhalb,
                           QStringLiteral("Die Anzahl der Konten darf nicht negativ sein."));
    }
    const Kontenvorlage vorlage;
    Transaktion tx(db);
    if (!db.hasTable(QStringLiteral("ObjKanzleiKontenstamm")))
        platform::storage::schemaAnlegen(db);
    if (tabelleLeer(db, QStringLiteral("BilanzPos")))
        stammdatenLaden(db);
    kontenEinfuegen(db, vorlage.spalten(), anzahlKonten,
                    [&](qint64 i) { return vorlage.zeile(i, jahr); });
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

} // namespace jahr
