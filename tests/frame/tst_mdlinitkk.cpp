// Initial values of a new account record and the guard for the column KontoZusatzDatenJN, on
// both engines.
#include "common/TestDatenbank.h"
#include "frame/Fehlerbericht.h"
#include "frame/mdlInitKK.h"
#include "platform/storage/Recordset.h"
#include "platform/storage/Schema.h"

#include <QTest>

using namespace platform::storage;

namespace {

struct Bericht
{
    QString ort;
    int nummer;
    QString text;
};

// Records every error report while it lives.
class Berichtsrekorder
{
public:
    Berichtsrekorder()
    {
        frame::setFehlerMelder([this](const QString &ort, const platform::RuntimeError &e) {
            berichte.push_back({ort, e.nummer(), e.beschreibung()});
        });
    }
    ~Berichtsrekorder() { frame::setFehlerMelder({}); }
    std::vector<Bericht> berichte;
};

const QString kontenstamm = QStringLiteral("ObjKanzleiKontenstamm");

// An account table of an older release that lacks `ohne` (nothing when empty).
std::shared_ptr<Database> datenbankMitKontenstamm(const QString &ohne = {})
{
    auto db = Database::open(testhilfe::neueDatenbank());
    Tabelle t = *tabelle(kontenstamm);
    std::erase_if(t.spalten,
                  [&](const Spalte &s) { return s.name.compare(ohne, Qt::CaseInsensitive) == 0; });
    db->execute(ddl(t, db->engine()));
    return db;
}

// Opens account `nr` of 2025 through a record set, initialised and saved.
void kontoAnlegen(const std::shared_ptr<Database> &db, const QString &nr)
{
    Recordset rs(db, QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?"),
                 {2025});
    rs.AddNew();
    mdlInitKK::KontoFelderInitialisieren(rs);
    rs.setFeld(QStringLiteral("KontoJJ"), 2025);
    rs.setFeld(QStringLiteral("kontonr"), nr);
    rs.Update();
}

// Stored values of the account as name -> value.
QMap<QString, QVariant> gespeichert(Database &db, const QString &nr)
{
    auto c
        = db.query(QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm WHERE KontoNr = ?"), {nr});
    QMap<QString, QVariant> werte;
    if (!c->next())
        return werte;
    for (int i = 0; i < c->spaltenAnzahl(); ++i)
        werte.insert(c->spaltenName(i).toLower(), c->wert(i));
    return werte;
}

// Checks that every initialised column except `ohne` holds its initial value.
void pruefeAnfangswerte(const QMap<QString, QVariant> &werte, const QString &ohne = {})
{
    QVERIFY(!werte.isEmpty());
    for (const mdlInitKK::Feldwert &f : mdlInitKK::kontoAnfangswerte()) {
        if (f.feld.compare(ohne, Qt::CaseInsensitive) == 0) {
            QVERIFY(!werte.contains(f.feld.toLower()));
            continue;
        }
        const QVariant v = werte.value(f.feld.toLower());
        QVERIFY2(!v.isNull(), qPrintable(f.feld));
        if (f.wert.typeId() == QMetaType::QString)
            QVERIFY2(v.typeId() == QMetaType::QString && v.toString().isEmpty(),
                     qPrintable(f.feld));
        else
            QVERIFY2(v.toLongLong() == f.wert.toLongLong(), qPrintable(f.feld));
    }
}

} // namespace

class TestMdlInitKK : public QObject
{
    Q_OBJECT

private slots:
    void anfangswerteDesKatalogs()
    {
        // Every write names a column of the catalogue and writes its initial value, and
        // every data column is written.
        const auto &werte = mdlInitKK::kontoAnfangswerte();
        const Tabelle &t = *tabelle(kontenstamm);
        QSet<QString> geschrieben;
        for (const auto &f : werte) {
            const Spalte *s = t.spalte(f.feld);
            QVERIFY2(s, qPrintable(f.feld));
            QCOMPARE(f.wert.toString(), s->anfangswert.toString());
            geschrieben.insert(s->name);
        }
        QCOMPARE(geschrieben.size(), qsizetype(t.spalten.size() - 2));
    }

    void neuerDatensatz()
    {
        Berichtsrekorder rekorder;
        auto db = testhilfe::neueDatenbankMitSchema();
        kontoAnlegen(db, QStringLiteral("0001"));
        QVERIFY(rekorder.berichte.empty());
        const auto werte = gespeichert(*db, QStringLiteral("0001"));
        pruefeAnfangswerte(werte);
        QCOMPARE(werte.value(QStringLiteral("kontoabrustproz")).toInt(), 100);
        QCOMPARE(werte.value(QStringLiteral("kontopvazusatz")).toInt(), -1);
        QCOMPARE(werte.value(QStringLiteral("kontojj")).toInt(), 2025);
    }

    void bestehenderDatensatzWirdZurueckgesetzt()
    {
        Berichtsrekorder rekorder;
        auto db = testhilfe::neueDatenbankMitSchema();
        db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, "
                                   "KontoBezeichnung, KontoUstProz, KontoAbrUstProz, "
                                   "KontoPVAZusatz) VALUES ('2800', 2025, 'Bank', 20, 99, 0)"));
        Recordset rs(db, QStringLiteral("SELECT * FROM ObjKanzleiKontenstamm"));
        rs.Edit();
        mdlInitKK::KontoFelderInitialisieren(rs);
        rs.Update();
        QVERIFY(rekorder.berichte.empty());
        pruefeAnfangswerte(gespeichert(*db, QStringLiteral("2800")));
    }

    void fehlendeSpalte_data()
    {
        QTest::addColumn<QString>("spalte");
        QTest::addColumn<int>("berichte");
        QTest::newRow("erste") << QStringLiteral("KontoBezeichnung") << 1;
        QTest::newRow("Zusatzdaten, anders geschrieben")
            << QStringLiteral("KontoZusatzDatenJN") << 1;
        QTest::newRow("Umlaut") << QStringLiteral("KontoBilPosRöm") << 1;
        QTest::newRow("Ja/Nein") << QStringLiteral("KontoPVAZusatz") << 1;
        QTest::newRow("letzte") << QStringLiteral("KontoEstgPflichtig") << 1;
        // Written twice, so missing twice.
        QTest::newRow("VSTKuerz") << QStringLiteral("KontoVSTKuerz") << 2;
    }

    void fehlendeSpalte()
    {
        QFETCH(QString, spalte);
        QFETCH(int, berichte);
        Berichtsrekorder rekorder;
        auto db = datenbankMitKontenstamm(spalte);
        kontoAnlegen(db, QStringLiteral("4711"));
        QCOMPARE(int(rekorder.berichte.size()), berichte);
        for (const Bericht &b : rekorder.berichte) {
            QCOMPARE(b.ort, QStringLiteral("in mdlInitKK"));
            QCOMPARE(b.nummer, platform::fehlernummer::FeldNichtGefunden);
        }
        pruefeAnfangswerte(gespeichert(*db, QStringLiteral("4711")), spalte);
    }

    void feldKontrolleFuegtSpalteHinzu()
    {
        Berichtsrekorder rekorder;
        auto db = datenbankMitKontenstamm(QStringLiteral("KontoZusatzDatenJN"));
        mdlInitKK::KKFeldKontrolle(*db);
        QVERIFY(rekorder.berichte.empty());
        QVERIFY(fehlendeSpalten(*db, kontenstamm).isEmpty());
        // The second run meets the column and reports it, as on every current database.
        mdlInitKK::KKFeldKontrolle(*db);
        QCOMPARE(rekorder.berichte.size(), std::size_t(1));
        QCOMPARE(rekorder.berichte.front().ort,
                 QStringLiteral("zelKontenStamm: in KKFeldKontrolle"));
        QVERIFY(rekorder.berichte.front().nummer != 0);
        QVERIFY(!rekorder.berichte.front().text.isEmpty());
        // The failed statement leaves the connection usable.
        QVERIFY(!db->inTransaction());
        QCOMPARE(db->scalar(QStringLiteral("SELECT COUNT(*) FROM ObjKanzleiKontenstamm")).toInt(),
                 0);
    }

    void stilleFeldKontrolle()
    {
        Berichtsrekorder rekorder;
        auto db = datenbankMitKontenstamm(QStringLiteral("KontoZusatzDatenJN"));
        db->execute(QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ) "
                                   "VALUES ('0001', 2025)"));
        QVERIFY(mdlInitKK::KKFeldKontrolleStill(*db));
        // The column comes without a default: the row that was there keeps no value.
        QVERIFY(db->scalar(QStringLiteral("SELECT KontoZusatzDatenJN FROM "
                                          "ObjKanzleiKontenstamm"))
                    .isNull());
        QVERIFY(!mdlInitKK::KKFeldKontrolleStill(*db));
        QVERIFY(rekorder.berichte.empty());
    }

    void stilleFeldKontrolleOhneTabelle()
    {
        Berichtsrekorder rekorder;
        auto db = Database::open(testhilfe::neueDatenbank());
        QVERIFY(!mdlInitKK::KKFeldKontrolleStill(*db));
        QCOMPARE(rekorder.berichte.size(), std::size_t(1));
        QCOMPARE(rekorder.berichte.front().nummer, platform::fehlernummer::TabelleNichtGefunden);
    }
};

ZEP_ENGINE_TEST_MAIN(TestMdlInitKK)

#include "tst_mdlinitkk.moc"
