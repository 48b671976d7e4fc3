#include "common/Fehlernummer.h"
#include "common/TestDatenbank.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Database.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include <QCheckBox>
#include <QDate>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>

using namespace platform;
using platform::storage::Database;
using platform::storage::Engine;
using testhilfe::fehlerVon;

namespace {

// Counts every UPDATE of DcTest in DcZaehler, so a test sees how often a row was written.
void tabellenAnlegen(Database &db, Engine engine)
{
    db.execute("CREATE TABLE DcTest (Nr integer PRIMARY KEY, Name varchar(40), Menge integer, "
               "Preis double precision, Aktiv smallint)");
    db.execute("CREATE TABLE DcZaehler (n integer)");
    db.execute("INSERT INTO DcZaehler (n) VALUES (0)");
    if (engine == Engine::SqlCipher) {
        db.execute("CREATE TRIGGER DcZaehlen AFTER UPDATE ON DcTest "
                   "BEGIN UPDATE DcZaehler SET n = n + 1; END");
    } else {
        db.execute("CREATE FUNCTION dczaehlen() RETURNS trigger AS $$ BEGIN "
                   "UPDATE DcZaehler SET n = n + 1; RETURN NEW; END $$ LANGUAGE plpgsql");
        db.execute("CREATE TRIGGER DcZaehlen AFTER UPDATE ON DcTest FOR EACH ROW "
                   "EXECUTE FUNCTION dczaehlen()");
    }
    const QVariant leer;
    const QVariantList zeilen[]
        = {{1, "Anna", 10, 1.5, -1}, {2, "Bert", 20, 2.5, 0}, {3, "Cäsar", leer, leer, 0}};
    for (const auto &z : zeilen)
        db.execute("INSERT INTO DcTest (Nr, Name, Menge, Preis, Aktiv) VALUES (?, ?, ?, ?, ?)", z);
}

// What the events of one data control saw.
struct Beobachter
{
    int repositions = 0;
    QList<std::pair<int, bool>> validates; // Action, Save as handed in
    QList<int> fehler;
    // Handler behaviour
    int actionSetzen = -1; // -1: leave
    int saveSetzen = -1; // -1: leave, 0/1
    int responseSetzen = -1;
    std::function<void()> inValidate;

    void verbinden(DataControl &dc)
    {
        QObject::connect(&dc, &DataControl::Reposition, [this] { ++repositions; });
        QObject::connect(&dc, &DataControl::Validate, [this](int &action, bool &save) {
            validates.append({action, save});
            if (inValidate)
                inValidate();
            if (actionSetzen >= 0)
                action = actionSetzen;
            if (saveSetzen >= 0)
                save = saveSetzen != 0;
        });
        QObject::connect(&dc, &DataControl::Error, [this](int nummer, int &response) {
            fehler.append(nummer);
            if (responseSetzen >= 0)
                response = responseSetzen;
        });
    }
};

} // namespace

class TestDataControl : public QObject
{
    Q_OBJECT

private:
    QString m_ort;
    std::shared_ptr<Database> m_db;
    std::unique_ptr<QWidget> m_fenster;
    DataControl *m_dc = nullptr;
    QLineEdit *m_name = nullptr;
    QLineEdit *m_menge = nullptr;
    QLineEdit *m_preis = nullptr;
    QCheckBox *m_aktiv = nullptr;
    QLabel *m_anzeige = nullptr;
    std::unique_ptr<Beobachter> m_b;
    std::unique_ptr<MsgBoxProtokoll> m_boxen;

    qlonglong updates() { return m_db->scalar("SELECT n FROM DcZaehler").toLongLong(); }
    QVariant gespeichert(int nr, const QString &feld)
    {
        return m_db->scalar("SELECT " + feld + " FROM DcTest WHERE Nr = ?", {nr});
    }
    int nr() { return m_dc->rs().feld("Nr").toInt(); }

private slots:
    void init()
    {
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        tabellenAnlegen(*m_db, testhilfe::aktuelleEngine());
        m_boxen.reset();
        m_boxen = std::make_unique<MsgBoxProtokoll>();
        m_boxen->setAntwortFunktion([](const MsgBoxEintrag &) { return vbOK; });
        m_fenster = std::make_unique<QWidget>();
        m_dc = new DataControl(m_fenster.get());
        m_dc->setDatabaseName(m_ort);
        m_dc->setConnect("Access;pwd=" + storage::DBPasswort + ";");
        m_dc->setRecordSource("SELECT * FROM DcTest WHERE Nr >= ? ORDER BY Nr", {1});
        m_name = new QLineEdit(m_fenster.get());
        m_menge = new QLineEdit(m_fenster.get());
        m_preis = new QLineEdit(m_fenster.get());
        m_aktiv = new QCheckBox(m_fenster.get());
        m_anzeige = new QLabel(m_fenster.get());
        m_dc->bind(m_name, "Name");
        m_dc->bind(m_menge, "Menge");
        m_dc->bind(m_preis, "Preis");
        m_dc->bind(m_aktiv, "Aktiv");
        m_dc->bind(m_anzeige, "Name");
        m_b = std::make_unique<Beobachter>();
        m_b->verbinden(*m_dc);
        QVERIFY(m_dc->Refresh());
    }

    void cleanup()
    {
        m_fenster.reset();
        m_b.reset();
        m_db.reset();
        const QStringList warnungen = m_boxen ? m_boxen->warnungen() : QStringList();
        m_boxen.reset();
        QVERIFY2(warnungen.isEmpty(), qPrintable(warnungen.join('\n')));
    }

    void refreshZeigtDieErsteZeile()
    {
        QCOMPARE(m_b->repositions, 1);
        QCOMPARE(nr(), 1);
        QCOMPARE(m_name->text(), "Anna");
        QCOMPARE(m_anzeige->text(), "Anna");
        QCOMPARE(m_menge->text(), "10");
        QCOMPARE(m_preis->text(), "1,5");
        QVERIFY(m_aktiv->isChecked());
        QVERIFY(!m_dc->bearbeitet());
        // Null shows as empty.
        QVERIFY(m_dc->rs().MoveLast());
        QCOMPARE(m_name->text(), "Cäsar");
        QCOMPARE(m_menge->text(), "");
        QCOMPARE(m_preis->text(), "");
        QVERIFY(!m_aktiv->isChecked());
    }

    void bewegenOhneBearbeitungSchreibtNichts()
    {
        // Changed and changed back is no edit.
        m_name->setText("Anders");
        m_name->setText("Anna");
        m_aktiv->setChecked(false);
        m_aktiv->setChecked(true);
        QVERIFY(!m_dc->bearbeitet());
        QVERIFY(m_dc->rs().MoveNext());
        QVERIFY(m_dc->rs().MoveNext());
        QVERIFY(m_dc->rs().MovePrevious());
        QVERIFY(m_dc->rs().MoveFirst());
        QVERIFY(m_dc->rs().MoveLast());
        QCOMPARE(m_b->repositions, 6);
        QCOMPARE(m_b->validates.size(), 5);
        for (const auto &[action, save] : m_b->validates)
            QVERIFY(!save);
        QCOMPARE(m_b->validates[0].first, int(vbDataActionMoveNext));
        QCOMPARE(m_b->validates[2].first, int(vbDataActionMovePrevious));
        QCOMPARE(updates(), 0);
    }

    void bearbeitetesFeldWirdBeimBewegenEinmalGeschrieben()
    {
        QTest::keyClicks(m_name, "X");
        QVERIFY(m_dc->bearbeitet());
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(m_b->validates.size(), 1);
        QVERIFY(m_b->validates[0].second);
        QCOMPARE(gespeichert(1, "Name").toString(), "AnnaX");
        QCOMPARE(gespeichert(1, "Menge").toLongLong(), 10);
        QCOMPARE(updates(), 1);
        QCOMPARE(m_name->text(), "Bert");
        // Back and forth: the saved row counts as unedited now.
        QVERIFY(m_dc->rs().MovePrevious());
        QCOMPARE(m_name->text(), "AnnaX");
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(updates(), 1);
        // An Edit of the screen's code and a typed field: both in the one Update of the move.
        m_dc->rs().Edit();
        m_dc->rs().setFeld("Menge", 77);
        m_name->setText("beides");
        QVERIFY(m_dc->rs().MoveNext());
        QVERIFY(m_b->validates.last().second);
        QCOMPARE(gespeichert(2, "Menge").toLongLong(), 77);
        QCOMPARE(gespeichert(2, "Name").toString(), "beides");
        QCOMPARE(updates(), 2);
    }

    void programmTextUndKontrollkaestchenZaehlenAlsBearbeitung()
    {
        m_menge->setText("42");
        m_aktiv->setChecked(false);
        m_anzeige->setText("nur Anzeige"); // a label is never written back
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(gespeichert(1, "Menge").toLongLong(), 42);
        QCOMPARE(gespeichert(1, "Aktiv").toLongLong(), 0);
        QCOMPARE(gespeichert(1, "Name").toString(), "Anna");
        QCOMPARE(updates(), 1);
        QVERIFY(m_dc->rs().MoveNext());
        m_aktiv->setChecked(true);
        m_preis->setText("7,25");
        QVERIFY(m_dc->rs().MovePrevious());
        QCOMPARE(gespeichert(3, "Aktiv").toLongLong(), -1);
        QCOMPARE(gespeichert(3, "Preis").toDouble(), 7.25);
        // A value the field shows rounded is not written back when another field is saved.
        m_db->execute("UPDATE DcTest SET Preis = ? WHERE Nr = 1", {0.1 + 0.2});
        QVERIFY(m_dc->rs().MoveFirst());
        QCOMPARE(m_preis->text(), "0,3");
        m_name->setText("Anna2");
        QVERIFY(m_dc->rs().MoveNext());
        QVERIFY(gespeichert(1, "Preis").toDouble() == 0.1 + 0.2); // exactly
    }

    void validateMitActionNullBehaeltZeileUndEingaben()
    {
        m_name->setText("Neu");
        m_b->actionSetzen = 0;
        QVERIFY(!m_dc->rs().MoveNext());
        QVERIFY(!m_dc->rs().FindFirst({{"Nr", 3}}));
        QVERIFY(!m_dc->rs().Requery());
        QVERIFY(!m_dc->Refresh());
        QVERIFY(!m_dc->schliessen());
        QCOMPARE(nr(), 1);
        QCOMPARE(m_name->text(), "Neu");
        QCOMPARE(m_b->repositions, 1);
        QCOMPARE(gespeichert(1, "Name").toString(), "Anna");
        QCOMPARE(updates(), 0);
        // Once the handler lets it pass, the kept edit is written.
        m_b->actionSetzen = -1;
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(gespeichert(1, "Name").toString(), "Neu");
    }

    void saveDesHandlersEntscheidet()
    {
        // The handler corrects a field itself; only its Save = true makes the write happen.
        m_b->inValidate = [this] {
            m_menge->setText("0");
        };
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(gespeichert(1, "Menge").toLongLong(), 10);
        m_b->saveSetzen = 1;
        QVERIFY(m_dc->rs().MoveNext());
        QCOMPARE(gespeichert(2, "Menge").toLongLong(), 0);
        QCOMPARE(updates(), 1);
        // Save = false drops the user's edit; the move still happens.
        m_b->inValidate = nullptr;
        m_b->saveSetzen = 0;
        m_name->setText("verworfen");
        QVERIFY(m_dc->rs().MoveFirst());
        QCOMPARE(gespeichert(3, "Name").toString(), "Cäsar");
        QCOMPARE(m_name->text(), "Anna");
        QCOMPARE(updates(), 1);
        // A handler that moves the record set itself raises no second Validate.
        m_b->saveSetzen = -1;
        m_b->validates.clear();
        m_b->inValidate = [this] {
            m_b->inValidate = nullptr;
            QVERIFY(m_dc->rs().MoveLast());
        };
        QVERIFY(m_dc->rs().MovePrevious());
        QCOMPARE(m_b->validates.size(), 1);
        QCOMPARE(nr(), 2);
    }

    void textDerNichtInDieSpaltePasstHaeltDenBenutzerAufDerZeile()
    {
        m_menge->setText("12a");
        m_name->setText("Geändert");
        QVERIFY(!m_dc->rs().MoveNext());
        QCOMPARE(m_b->fehler, QList<int> {fehlernummer::Typenkonflikt});
        QCOMPARE(m_boxen->anzahl(), 1);
        QCOMPARE(m_boxen->letzter().text, "Typen unverträglich");
        QCOMPARE(nr(), 1);
        QCOMPARE(m_menge->text(), "12a");
        QCOMPARE(m_name->text(), "Geändert");
        QCOMPARE(gespeichert(1, "Name").toString(), "Anna");
        QCOMPARE(updates(), 0);
        QVERIFY(m_dc->bearbeitet());
    }

    void falscheRecordSourceLoestErrorAus()
    {
        m_dc->setRecordSource("SELECT * FROM GibtEsNicht");
        QVERIFY(!m_dc->Refresh());
        QCOMPARE(m_b->fehler, QList<int> {fehlernummer::TabelleNichtGefunden});
        QCOMPARE(m_boxen->anzahl(), 1); // Response left at 1: the standard message
        QCOMPARE(m_name->text(), "");
        QVERIFY(m_dc->recordsetDirekt() == nullptr);
        QCOMPARE(fehlerVon([&] { m_dc->rs().RecordCount(); }),
                 fehlernummer::ObjektvariableNichtFestgelegt);
        // Response 0: the screen showed its own message, the control stays silent.
        m_b->responseSetzen = 0;
        QVERIFY(!m_dc->Refresh());
        QCOMPARE(m_boxen->anzahl(), 1);
        // Run by a procedure that traps its errors: raised to it, no event, no message.
        m_b->fehler.clear();
        QCOMPARE(fehlerVon([&] { m_dc->RefreshOderFehler(); }), fehlernummer::TabelleNichtGefunden);
        QVERIFY(m_b->fehler.isEmpty());
        QCOMPARE(m_boxen->anzahl(), 1);
        QVERIFY(m_dc->recordsetDirekt() == nullptr);
        // A wrong password in Connect (only the file engine has one).
        if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
            m_dc->setConnect("Access;pwd=falsch;");
            m_dc->setRecordSource("SELECT * FROM DcTest");
            QVERIFY(!m_dc->Refresh());
            QCOMPARE(m_b->fehler.last(), fehlernummer::UngueltigesKennwort);
        }
    }

    void konfliktMitAnderemBenutzer_data()
    {
        QTest::addColumn<QString>("anderer"); // the field the other user changed, "" deleted
        QTest::addColumn<int>("antwort");
        QTest::newRow("gleiches Feld, behalten") << "Name" << int(vbNo);
        QTest::newRow("gleiches Feld, neu laden") << "Name" << int(vbYes);
        QTest::newRow("anderes Feld") << "Menge" << 0;
        QTest::newRow("geloescht, behalten") << "" << int(vbNo);
        QTest::newRow("geloescht, neu laden") << "" << int(vbYes);
    }
    void konfliktMitAnderemBenutzer()
    {
        QFETCH(QString, anderer);
        QFETCH(int, antwort);
        const auto ci = Qt::CaseInsensitive;
        m_boxen->setAntwortFunktion({});
        QVERIFY(m_dc->rs().MoveNext());
        auto andere = Database::openSeparate(m_ort);
        if (anderer.isEmpty())
            andere->execute("DELETE FROM DcTest WHERE Nr = ?", {2});
        else
            andere->execute("UPDATE DcTest SET " + anderer + " = ? WHERE Nr = ?",
                            {anderer == "Name" ? QVariant("Berta") : QVariant(21), 2});
        m_name->setText("meins");
        if (antwort)
            m_boxen->antworte(antwort);
        const bool bewegt = m_dc->rs().MoveNext();
        // Said once, in the conflict's own words; no second standard message.
        QVERIFY(m_b->fehler.isEmpty());
        QCOMPARE(m_boxen->anzahl(), 1);
        QCOMPARE(m_boxen->letzter().titel, "Gleichzeitige Änderung");
        const QString text = m_boxen->letzter().text;
        if (anderer == "Menge") {
            // Different fields: this user's on top of the other's, and a notice, no question.
            QVERIFY(bewegt);
            QVERIFY(m_boxen->letzter().nichtModal);
            QVERIFY2(text.contains(QStringLiteral("menge: \u201E21\u201C"), ci), qPrintable(text));
            QCOMPARE(gespeichert(2, "Name").toString(), "meins");
            QCOMPARE(gespeichert(2, "Menge").toInt(), 21);
            return;
        }
        QVERIFY(!bewegt);
        if (anderer.isEmpty()) {
            QVERIFY(text.startsWith("Der Datensatz wurde inzwischen von einem anderen Benutzer "
                                    "gelöscht."));
        } else {
            QVERIFY2(text.contains(QStringLiteral("name: gespeichert \u201EBerta\u201C, bei "
                                                  "Ihnen \u201Emeins\u201C"),
                                   ci),
                     qPrintable(text));
            QVERIFY(!text.contains("menge:", ci));
        }
        // Nothing of this user was written, whatever the answer.
        QCOMPARE(gespeichert(2, "Name").toString(), anderer.isEmpty() ? QString() : "Berta");
        if (antwort == vbNo) {
            QCOMPARE(nr(), 2);
            QCOMPARE(m_name->text(), "meins");
            QVERIFY(m_dc->bearbeitet());
            QCOMPARE(m_dc->rs().editMode(), storage::EditMode::Keiner);
            if (!anderer.isEmpty()) {
                // The entries now count against the stored row just shown: the next save goes
                // through without asking again.
                QVERIFY(m_dc->UpdateRecord());
                QCOMPARE(gespeichert(2, "Name").toString(), "meins");
                QCOMPARE(m_boxen->anzahl(), 1);
            }
        } else {
            QVERIFY(!m_dc->bearbeitet());
            // The stored row; a deleted one gives way to its neighbour, not the first row.
            QCOMPARE(nr(), anderer.isEmpty() ? 3 : 2);
            QCOMPARE(m_name->text(), anderer.isEmpty() ? "Cäsar" : "Berta");
            m_name->setText("meins");
            QVERIFY(m_dc->UpdateRecord());
            QCOMPARE(gespeichert(nr(), "Name").toString(), "meins");
        }
        andere.reset();
    }

    // Paging away and back shows the row as stored now, and a save from it goes through.
    void zurueckGeblaettertZeigtGespeichertes()
    {
        auto andere = Database::openSeparate(m_ort);
        QVERIFY(m_dc->rs().MoveNext());
        andere->execute("UPDATE DcTest SET Name = ? WHERE Nr = ?", {"Anne", 1});
        QVERIFY(m_dc->rs().MovePrevious());
        QCOMPARE(m_name->text(), "Anne");
        m_name->setText("Annette");
        QVERIFY(m_dc->UpdateRecord());
        QCOMPARE(gespeichert(1, "Name").toString(), "Annette");
        QCOMPARE(m_boxen->anzahl(), 0);
    }

    void loeschenNachFremderAenderung_data()
    {
        QTest::addColumn<bool>("geloescht");
        QTest::addColumn<int>("antwort");
        QTest::newRow("geaendert, trotzdem loeschen") << false << int(vbYes);
        QTest::newRow("geaendert, behalten") << false << int(vbNo);
        QTest::newRow("schon geloescht") << true << int(vbOK);
    }
    void loeschenNachFremderAenderung()
    {
        QFETCH(bool, geloescht);
        QFETCH(int, antwort);
        m_boxen->setAntwortFunktion({});
        auto andere = Database::openSeparate(m_ort);
        andere->execute(geloescht ? "DELETE FROM DcTest WHERE Nr = 1"
                                  : "UPDATE DcTest SET Menge = 11 WHERE Nr = 1");
        m_boxen->antworte(antwort);
        const bool weg = m_dc->rs().Delete();
        QVERIFY(m_b->fehler.isEmpty());
        QCOMPARE(m_boxen->anzahl(), 1);
        const QString text = m_boxen->letzter().text;
        QVERIFY2(text.contains(geloescht ? QStringLiteral("gelöscht.")
                                         : QStringLiteral("menge: gespeichert \u201E11\u201C, "
                                                          "bisher angezeigt \u201E10\u201C"),
                               Qt::CaseInsensitive),
                 qPrintable(text));
        QCOMPARE(weg, antwort != vbNo);
        QCOMPARE(m_db->scalar("SELECT count(*) FROM DcTest WHERE Nr = 1").toInt(),
                 antwort == vbNo ? 1 : 0);
        if (!weg)
            QCOMPARE(m_menge->text(), "11");
    }

    void findFirstBewegtNurBeiTreffer()
    {
        m_name->setText("vor Suche");
        QVERIFY(!m_dc->rs().FindFirst({{"Nr", 99}}));
        QVERIFY(m_dc->rs().NoMatch());
        QVERIFY(m_b->validates.isEmpty());
        QCOMPARE(gespeichert(1, "Name").toString(), "Anna");
        QVERIFY(m_dc->rs().FindFirst({{"Nr", 3}}));
        QVERIFY(!m_dc->rs().NoMatch());
        QCOMPARE(m_b->validates.size(), 1);
        QCOMPARE(m_b->validates[0].first, int(vbDataActionFind));
        QCOMPARE(nr(), 3);
        QCOMPARE(m_name->text(), "Cäsar");
        QCOMPARE(gespeichert(1, "Name").toString(), "vor Suche");
        QCOMPARE(m_b->repositions, 2);
    }

    void bookmarkRequeryRefreshUndSchliessenSpeichern()
    {
        const auto erstes = m_dc->rs().bookmark();
        QVERIFY(m_dc->rs().MoveLast());
        m_name->setText("B1");
        QVERIFY(m_dc->rs().setBookmark(erstes));
        QCOMPARE(nr(), 1);
        QCOMPARE(gespeichert(3, "Name").toString(), "B1");

        m_name->setText("R1");
        QVERIFY(m_dc->rs().Requery());
        QCOMPARE(gespeichert(1, "Name").toString(), "R1");
        QCOMPARE(m_name->text(), "R1");

        m_name->setText("R2");
        m_dc->setRecordSource("SELECT * FROM DcTest WHERE Nr = ?", {2});
        QVERIFY(m_dc->Refresh());
        QCOMPARE(gespeichert(1, "Name").toString(), "R2");
        QCOMPARE(m_dc->rs().RecordCount(), 1);
        QCOMPARE(m_name->text(), "Bert");

        m_name->setText("S1");
        QVERIFY(m_dc->schliessen());
        QCOMPARE(m_b->validates.last().first, int(vbDataActionUnload));
        QCOMPARE(gespeichert(2, "Name").toString(), "S1");
        QCOMPARE(updates(), 4);
    }

    void updateRecordUndUpdateControls()
    {
        // Saving asks Validate with Save = true even when nothing was typed.
        QVERIFY(m_dc->UpdateRecord());
        QVERIFY(m_b->validates.last().second);
        QCOMPARE(updates(), 0);
        m_menge->setText(" 0012 ");
        QVERIFY(m_dc->UpdateRecord());
        QCOMPARE(m_b->validates.last().first, int(vbDataActionUpdate));
        QCOMPARE(gespeichert(1, "Menge").toLongLong(), 12);
        QCOMPARE(m_menge->text(), "12"); // shown as stored
        QCOMPARE(m_b->repositions, 1);
        m_name->setText("weg damit");
        m_dc->UpdateControls();
        QCOMPARE(m_name->text(), "Anna");
        QVERIFY(!m_dc->bearbeitet());
    }

    void endenUndLoeschen()
    {
        QVERIFY(m_dc->rs().MovePrevious());
        QVERIFY(m_dc->rs().bof());
        QCOMPARE(m_name->text(), ""); // no current row
        QCOMPARE(fehlerVon([&] { m_dc->rs().MovePrevious(); }),
                 fehlernummer::KeinAktuellerDatensatz);
        QCOMPARE(m_b->validates.size(), 1);
        QVERIFY(m_dc->rs().MoveFirst());
        m_name->setText("wird gelöscht");
        m_dc->rs().Delete();
        QVERIFY(m_dc->rs().MoveNext());
        QVERIFY(!m_b->validates.last().second);
        QCOMPARE(nr(), 2);
        QCOMPARE(m_db->scalar("SELECT COUNT(*) FROM DcTest").toLongLong(), 2);
        QCOMPARE(updates(), 0);
        // A delete the database refuses is its own error, not a question about another user.
        if (testhilfe::aktuelleEngine() == Engine::SqlCipher) {
            m_db->execute("CREATE TRIGGER DcSperre BEFORE DELETE ON DcTest "
                          "BEGIN SELECT RAISE(ABORT, 'gesperrt'); END");
        } else {
            m_db->execute("CREATE FUNCTION dcsperre() RETURNS trigger AS $$ BEGIN "
                          "RAISE EXCEPTION 'gesperrt'; END $$ LANGUAGE plpgsql");
            m_db->execute("CREATE TRIGGER DcSperre BEFORE DELETE ON DcTest FOR EACH ROW "
                          "EXECUTE FUNCTION dcsperre()");
        }
        const int nummer = fehlerVon([&] { m_dc->rs().Delete(); });
        QVERIFY2(nummer != 0 && nummer != fehlernummer::DatensatzGeaendert,
                 qPrintable(QString::number(nummer)));
        QCOMPARE(m_boxen->anzahl(), 0);
        QCOMPARE(nr(), 2);
    }

    void navigationsleiste()
    {
        m_dc->setCaption("Konten");
        QCOMPARE(m_dc->Caption(), "Konten");
        const auto knoepfe = m_dc->findChildren<QToolButton *>();
        QCOMPARE(knoepfe.size(), 4);
        m_name->setText("über Leiste");
        knoepfe[2]->click(); // next
        QCOMPARE(nr(), 2);
        QCOMPARE(gespeichert(1, "Name").toString(), "über Leiste");
        knoepfe[3]->click(); // last
        knoepfe[2]->click(); // next on the last row stays there
        QCOMPARE(nr(), 3);
        QVERIFY(!m_dc->rs().eof());
        knoepfe[0]->click();
        QCOMPARE(nr(), 1);
        knoepfe[1]->click();
        QCOMPARE(nr(), 1);
        QVERIFY(!m_dc->rs().bof());
    }

    void fuellFlagNurWaehrendDesFuellens()
    {
        QList<bool> gesehen;
        connect(m_name, &QLineEdit::textChanged, this,
                [&](const QString &) { gesehen.append(m_dc->fuellt()); });
        QVERIFY(m_dc->rs().MoveNext());
        m_name->setText("Tippen");
        QCOMPARE(gesehen, (QList<bool> {true, false}));
        QVERIFY(!m_dc->fuellt());
    }

    void feldwerte_data()
    {
        QTest::addColumn<QVariant>("eingabe");
        QTest::addColumn<int>("art");
        QTest::addColumn<QVariant>("erwartet"); // invalid: error 13
        using A = bindung::Art;
        const QVariant fehler;
        const QVariant null = QVariant(QMetaType::fromType<QString>());
        QTest::newRow("ganz") << QVariant("12") << int(A::Ganzzahl) << QVariant(12LL);
        QTest::newRow("ganz blanks") << QVariant(" -7 ") << int(A::Ganzzahl) << QVariant(-7LL);
        QTest::newRow("ganz leer") << QVariant("  ") << int(A::Ganzzahl) << null;
        QTest::newRow("ganz komma") << QVariant("1,5") << int(A::Ganzzahl) << fehler;
        QTest::newRow("ganz text") << QVariant("zwölf") << int(A::Ganzzahl) << fehler;
        QTest::newRow("komma deutsch") << QVariant("2,25") << int(A::Kommazahl) << QVariant(2.25);
        QTest::newRow("komma punkt") << QVariant("2.25") << int(A::Kommazahl) << QVariant(2.25);
        QTest::newRow("komma text") << QVariant("2x") << int(A::Kommazahl) << fehler;
        QTest::newRow("datum") << QVariant("31.12.2003") << int(A::Datum)
                               << QVariant(QDate(2003, 12, 31));
        QTest::newRow("datum iso")
            << QVariant("2003-12-31") << int(A::Datum) << QVariant(QDate(2003, 12, 31));
        QTest::newRow("datum falsch") << QVariant("31.02.2003") << int(A::Datum) << fehler;
        QTest::newRow("text blanks") << QVariant(" a ") << int(A::Text) << QVariant(" a ");
        QTest::newRow("text leer") << QVariant("") << int(A::Text) << QVariant("");
        QTest::newRow("unbekannt leer") << QVariant("") << int(A::Unbekannt) << null;
        QTest::newRow("kontrollkästchen an")
            << QVariant(true) << int(A::Ganzzahl) << QVariant(-1LL);
        QTest::newRow("kontrollkästchen aus")
            << QVariant(false) << int(A::Ganzzahl) << QVariant(0LL);
        QTest::newRow("kombi ohne Wahl") << QVariant(-1) << int(A::Ganzzahl) << null;
    }

    void feldwerte()
    {
        QFETCH(QVariant, eingabe);
        QFETCH(int, art);
        QFETCH(QVariant, erwartet);
        try {
            const QVariant v = bindung::inFeldwert(eingabe, bindung::Art(art));
            QVERIFY2(erwartet.isValid(), qPrintable("kein Fehler, sondern " + v.toString()));
            if (erwartet.isNull())
                QVERIFY(v.isNull());
            else
                QCOMPARE(v, erwartet);
        } catch (const RuntimeError &e) {
            QVERIFY2(!erwartet.isValid(), qPrintable(e.beschreibung()));
            QCOMPARE(e.nummer(), fehlernummer::Typenkonflikt);
        }
    }
};

ZEP_ENGINE_TEST_MAIN(TestDataControl)
#include "tst_datacontrol.moc"
