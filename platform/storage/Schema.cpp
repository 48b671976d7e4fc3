#include "Schema.h"

#include "Aenderungsprotokoll.h"
#include "platform/core/RuntimeError.h"

namespace platform::storage {

namespace {

Spalte text(const QString &name, int laenge, QVariant anfang = {})
{
    return Spalte {name, Spaltentyp::Text, laenge, std::move(anfang)};
}

Spalte kurz(const QString &name, QVariant anfang = {})
{
    return Spalte {name, Spaltentyp::Ganzzahl16, 0, std::move(anfang)};
}

Spalte lang(const QString &name, QVariant anfang = {})
{
    return Spalte {name, Spaltentyp::Ganzzahl32, 0, std::move(anfang)};
}

Spalte betrag(const QString &name)
{
    return Spalte {name, Spaltentyp::Kommazahl, 0, 0.0};
}

Spalte datum(const QString &name)
{
    return Spalte {name, Spaltentyp::Datum};
}

Spalte id(const QString &name)
{
    Spalte s {name, Spaltentyp::Ganzzahl32};
    s.autoWert = true;
    return s;
}

const QString leer = QStringLiteral("");

// Account numbers of the general ledger: 4 to 6 digits, stored right-trimmed.
constexpr int kontoNrLaenge = 6;

Tabelle kontenstamm()
{
    // The data fields in the order the record initialisation writes them (KontoVSTKuerz, which
    // it writes twice, is one column); the initial values are the ones it writes.
    return Tabelle {
        QStringLiteral("ObjKanzleiKontenstamm"),
        {
            text(QStringLiteral("KontoNr"), kontoNrLaenge),
            kurz(QStringLiteral("KontoJJ")),
            text(QStringLiteral("KontoBezeichnung"), 50, leer),
            text(QStringLiteral("KontoAnmerkung1"), 50, leer),
            text(QStringLiteral("KontoAnmerkung2"), 50, leer),
            kurz(QStringLiteral("KontoTypus"), 0),
            kurz(QStringLiteral("KontoUstProz"), 0),
            text(QStringLiteral("KontoUstKtoNr"), kontoNrLaenge, leer),
            kurz(QStringLiteral("KontoBkENAbrDef"), 0),
            kurz(QStringLiteral("KontoBkBlockPos"), 0),
            kurz(QStringLiteral("KontoBkEinnAusgPos"), 0),
            kurz(QStringLiteral("KontoBkAbrVerdichtKz"), 0),
            kurz(QStringLiteral("KontoAbrSchlPos"), 0),
            kurz(QStringLiteral("KontoVSTKuerz"), 0),
            kurz(QStringLiteral("KontoAbrUstProz"), 100),
            kurz(QStringLiteral("KontoBkEinnUstProz"), 0),
            kurz(QStringLiteral("KontoÖNORMAbrPos_I_II_III"), 0),
            kurz(QStringLiteral("KontoÖNORMAbrPos_ABC"), 0),
            kurz(QStringLiteral("KontoÖNORMAbrBlockPos"), 0),
            kurz(QStringLiteral("KontoÖNORMAbrKontenArt"), 0),
            kurz(QStringLiteral("KontoHeEinnAusgPos"), 0),
            kurz(QStringLiteral("KontoHeAbrVerdichtKz"), 0),
            kurz(QStringLiteral("KontoBeiblPos"), 0),
            kurz(QStringLiteral("KontoBeiblVerdichtKz"), 0),
            kurz(QStringLiteral("KontoHmzresPos"), 0),
            kurz(QStringLiteral("KontoHmzresVerdichtKz"), 0),
            kurz(QStringLiteral("KontoErhbeitrPos"), 0),
            kurz(QStringLiteral("KontoErhbeitrVerdichtKz"), 0),
            kurz(QStringLiteral("KontoVoranmPos"), 0),
            // A date as a number; 0 = not cancelled.
            lang(QStringLiteral("KontoStornoDatum"), 0),
            // Added to older databases by "ADD COLUMN KontoZusatzDatenJN integer".
            lang(QStringLiteral("KontoZusatzDatenJN"), 0),
            kurz(QStringLiteral("KontoAbschlArt"), 0),
            text(QStringLiteral("KontoSbkGuvKontoNr"), kontoNrLaenge, leer),
            text(QStringLiteral("KontoEbkKontoNr"), kontoNrLaenge, leer),
            kurz(QStringLiteral("KontoPos1"), 0),
            kurz(QStringLiteral("KontoPos2"), 0),
            kurz(QStringLiteral("KontoPos3"), 0),
            kurz(QStringLiteral("KontoBilPosAktPass"), 0),
            text(QStringLiteral("KontoBilPosABC"), 2, leer),
            text(QStringLiteral("KontoBilPosRöm"), 5, leer),
            text(QStringLiteral("KontoBilPosArab"), 3, leer),
            text(QStringLiteral("KontoBilPosABCklein"), 2, leer),
            text(QStringLiteral("KontoSachKtNr"), 10, leer),
            text(QStringLiteral("KontoBuchArt"), 2, leer),
            text(QStringLiteral("KontoZLSperre"), 1, leer),
            text(QStringLiteral("KontoVerdichtKZ"), 2, leer),
            text(QStringLiteral("KontoSAPKtNr"), 20, leer),
            text(QStringLiteral("KontoSAPKtNr2"), 20, leer),
            kurz(QStringLiteral("KontoPVAKz"), 0),
            Spalte {QStringLiteral("KontoPVAZusatz"), Spaltentyp::JaNein, 0, -1},
            kurz(QStringLiteral("KontoRechtsbereich"), 0),
            kurz(QStringLiteral("KontoEstgPflichtig"), 0),
        },
        {QStringLiteral("KontoNr"), QStringLiteral("KontoJJ")},
    };
}

Tabelle salden()
{
    // One row per account, property and year; SSBuNr above 0 means postings exist. The reads
    // select by year and account number, never by a row's own identity: an id keeps rows of the
    // same account and property apart.
    return Tabelle {
        QStringLiteral("ObjKanzleiSalden"),
        {
            id(QStringLiteral("SSId")),
            lang(QStringLiteral("SSObjNr"), 0),
            lang(QStringLiteral("SSBuNr"), 0),
            kurz(QStringLiteral("SSJJ")),
            text(QStringLiteral("SSKontoNr"), kontoNrLaenge),
            betrag(QStringLiteral("SSSaldoVortrag")),
            betrag(QStringLiteral("SSSollSumme")),
            betrag(QStringLiteral("SSHabenSumme")),
        },
        {QStringLiteral("SSId")},
        {{QStringLiteral("SSJJ"), QStringLiteral("SSKontoNr")}},
    };
}

Tabelle schluesselDaten()
{
    return Tabelle {
        QStringLiteral("AllgSchluesselDaten"),
        {
            lang(QStringLiteral("SchlNummer")),
            text(QStringLiteral("SchlKurzbezeich"), 10, leer),
            text(QStringLiteral("SchlLangBezeich"), 50, leer),
            datum(QStringLiteral("SchlAbDatum")),
            datum(QStringLiteral("SchlBisDatum")),
        },
        {QStringLiteral("SchlNummer")},
    };
}

Tabelle bilanzPos()
{
    return Tabelle {
        QStringLiteral("BilanzPos"),
        {
            kurz(QStringLiteral("BilPosAktPass")),
            text(QStringLiteral("BilPosABC"), 2),
            text(QStringLiteral("BilPosRöm"), 5),
            text(QStringLiteral("BilPosArab"), 3),
            text(QStringLiteral("BilPosABCklein"), 2),
            text(QStringLiteral("BilPosText"), 120, leer),
        },
        {QStringLiteral("BilPosAktPass"), QStringLiteral("BilPosABC"), QStringLiteral("BilPosRöm"),
         QStringLiteral("BilPosArab"), QStringLiteral("BilPosABCklein")},
    };
}

Tabelle bilanzPosZl7()
{
    return Tabelle {
        QStringLiteral("BilanzPosZL7"),
        {
            kurz(QStringLiteral("BilZl7Pos1")),
            kurz(QStringLiteral("BilZl7Pos2")),
            kurz(QStringLiteral("BilZl7Pos3")),
            text(QStringLiteral("BilZl7PosText"), 80, leer),
        },
        {QStringLiteral("BilZl7Pos1"), QStringLiteral("BilZl7Pos2"), QStringLiteral("BilZl7Pos3")},
    };
}

Tabelle abrPosBkAbr()
{
    return Tabelle {
        QStringLiteral("AbrPosBkAbr"),
        {
            kurz(QStringLiteral("AbrPosBkPos1")),
            kurz(QStringLiteral("AbrPosBkPos2")),
            text(QStringLiteral("AbrPosBkPosText"), 80, leer),
        },
        {QStringLiteral("AbrPosBkPos1"), QStringLiteral("AbrPosBkPos2")},
    };
}

Tabelle bkBloecke()
{
    return Tabelle {
        QStringLiteral("AbrPosBkBlöcke"),
        {
            kurz(QStringLiteral("BkBlockPos")),
            text(QStringLiteral("BkBlockText"), 60, leer),
            lang(QStringLiteral("BkBlockSchlPos"), 0),
        },
        {QStringLiteral("BkBlockPos")},
    };
}

Tabelle kreditoren()
{
    return Tabelle {
        QStringLiteral("KreditorenKontenstamm"),
        {
            lang(QStringLiteral("KrKontoNr")),
            text(QStringLiteral("KrKontoBezeichnung"), 50, leer),
            text(QStringLiteral("KrKontoTypus"), 1, QStringLiteral("1")),
            lang(QStringLiteral("KrStornoDatum"), 0),
        },
        {QStringLiteral("KrKontoNr")},
    };
}

Tabelle kreditorenBuchungen()
{
    return Tabelle {
        QStringLiteral("KreditorenBuchungen"),
        {
            id(QStringLiteral("KbId")),
            lang(QStringLiteral("KbKontoNr")),
            lang(QStringLiteral("KbObjNr"), 0),
            kurz(QStringLiteral("KbJJ")),
            datum(QStringLiteral("KbBuchDatum")),
            text(QStringLiteral("KbBelegNr"), 20, leer),
            text(QStringLiteral("KbBuchText"), 60, leer),
            text(QStringLiteral("KbSachKontoNr"), kontoNrLaenge, leer),
            kurz(QStringLiteral("KbUstProz"), 0),
            betrag(QStringLiteral("KbBetrag")),
        },
        {QStringLiteral("KbId")},
        {{QStringLiteral("KbKontoNr")}},
    };
}

Tabelle kreditorenSalden()
{
    return Tabelle {
        QStringLiteral("KreditorenSalden"),
        {
            lang(QStringLiteral("KsKontoNr")),
            kurz(QStringLiteral("KsJJ")),
            betrag(QStringLiteral("KsSaldoVortrag")),
            betrag(QStringLiteral("KsSollSumme")),
            betrag(QStringLiteral("KsHabenSumme")),
        },
        {QStringLiteral("KsKontoNr"), QStringLiteral("KsJJ")},
    };
}

bool gleicherName(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString literal(const QVariant &wert)
{
    if (wert.typeId() == QMetaType::QString) {
        QString s = wert.toString();
        s.replace(QLatin1Char('\''), QStringLiteral("''"));
        return QLatin1Char('\'') + s + QLatin1Char('\'');
    }
    if (wert.typeId() == QMetaType::Double)
        return QString::number(wert.toDouble(), 'g', 17);
    return QString::number(wert.toLongLong());
}

} // namespace

const Spalte *Tabelle::spalte(const QString &gesucht) const
{
    for (const Spalte &s : spalten) {
        if (gleicherName(s.name, gesucht))
            return &s;
    }
    return nullptr;
}

QStringList Tabelle::spaltenNamen() const
{
    QStringList namen;
    for (const Spalte &s : spalten)
        namen << s.name;
    return namen;
}

const std::vector<Tabelle> &schemaKatalog()
{
    static const std::vector<Tabelle> katalog {
        kontenstamm(), salden(),    schluesselDaten(), bilanzPos(),           bilanzPosZl7(),
        abrPosBkAbr(), bkBloecke(), kreditoren(),      kreditorenBuchungen(), kreditorenSalden(),
    };
    return katalog;
}

const Tabelle *tabelle(const QString &name)
{
    for (const Tabelle &t : schemaKatalog()) {
        if (gleicherName(t.name, name))
            return &t;
    }
    return nullptr;
}

QString spaltenDdl(const Spalte &s, Engine engine, bool istSchluessel)
{
    const bool pg = engine == Engine::PostgreSql;
    if (s.autoWert) {
        // SQLite numbers an INTEGER PRIMARY KEY by itself; the type must be spelled so.
        return pg ? QStringLiteral("integer GENERATED BY DEFAULT AS IDENTITY PRIMARY KEY")
                  : QStringLiteral("INTEGER PRIMARY KEY");
    }
    QString typ;
    switch (s.typ) {
    case Spaltentyp::Text:
        typ = QStringLiteral("varchar(%1)").arg(s.laenge);
        // PostgreSQL's default collation ignores blanks and case when sorting; keys must sort
        // byte-wise as in the embedded engine.
        if (pg && istSchluessel)
            typ += QStringLiteral(" COLLATE \"C\"");
        break;
    case Spaltentyp::Ganzzahl16:
    case Spaltentyp::JaNein:
        typ = QStringLiteral("smallint");
        break;
    case Spaltentyp::Ganzzahl32:
        typ = QStringLiteral("integer");
        break;
    case Spaltentyp::Kommazahl:
        typ = pg ? QStringLiteral("double precision") : QStringLiteral("double");
        break;
    case Spaltentyp::Datum:
        typ = QStringLiteral("date");
        break;
    }
    if (istSchluessel)
        typ += QStringLiteral(" NOT NULL");
    if (s.anfangswert.isValid())
        typ += QStringLiteral(" DEFAULT ") + literal(s.anfangswert);
    return typ;
}

QString ddl(const Tabelle &t, Engine engine)
{
    QStringList teile;
    bool autoSchluessel = false;
    for (const Spalte &s : t.spalten) {
        const bool schluessel = t.schluessel.contains(s.name, Qt::CaseInsensitive);
        autoSchluessel = autoSchluessel || s.autoWert;
        teile << s.name + QLatin1Char(' ') + spaltenDdl(s, engine, schluessel);
    }
    if (!autoSchluessel && !t.schluessel.isEmpty())
        teile << QStringLiteral("PRIMARY KEY (") + t.schluessel.join(QStringLiteral(", "))
                + QLatin1Char(')');
    return QStringLiteral("CREATE TABLE ") + t.name + QStringLiteral(" (")
        + teile.join(QStringLiteral(", ")) + QLatin1Char(')');
}

QStringList indexDdl(const Tabelle &t)
{
    QStringList befehle;
    int nr = 0;
    for (const QStringList &spalten : t.indizes) {
        befehle << QStringLiteral("CREATE INDEX ix_%1_%2 ON %1 (%3)")
                       .arg(t.name)
                       .arg(++nr)
                       .arg(spalten.join(QStringLiteral(", ")));
    }
    return befehle;
}

void schemaAnlegen(Database &db)
{
    auto anlegen = [&db] {
        for (const Tabelle &t : schemaKatalog()) {
            db.execute(ddl(t, db.engine()));
            for (const QString &befehl : indexDdl(t))
                db.execute(befehl);
        }
        Aenderungsprotokoll::einrichten(db);
    };
    if (db.inTransaction()) {
        anlegen();
        return;
    }
    Transaktion tx(db);
    anlegen();
    tx.commit();
}

QStringList fehlendeSpalten(Database &db, const QString &name)
{
    const Tabelle *t = tabelle(name);
    if (!t) {
        throw RuntimeError(
            fehlernummer::TabelleNichtGefunden,
            QStringLiteral("Die Tabelle '%1' ist dem Programm nicht bekannt.").arg(name));
    }
    if (!db.hasTable(t->name))
        return t->spaltenNamen();
    const QStringList vorhanden = db.columns(t->name);
    QStringList fehlend;
    for (const Spalte &s : t->spalten) {
        if (!vorhanden.contains(s.name, Qt::CaseInsensitive))
            fehlend << s.name;
    }
    return fehlend;
}

} // namespace platform::storage
