// The creditor rules without a screen: type decisions, number values and message texts.
#include "creditors/Kreditorenregeln.h"
#include "platform/core/RuntimeError.h"

#include <QTest>

using namespace creditors::regeln;

class TestKreditorenregeln : public QObject
{
    Q_OBJECT

private slots:
    void typusKorrektur_data()
    {
        QTest::addColumn<qint64>("typus");
        QTest::addColumn<bool>("buchungen");
        QTest::addColumn<int>("mitObjekt");
        QTest::addColumn<int>("erwartet"); // -1: stays as it is

        QTest::newRow("ohne Buchungen Kanzlei") << qint64(0) << false << 1 << -1;
        QTest::newRow("ohne Buchungen Objekt") << qint64(1) << false << 0 << -1;
        QTest::newRow("Kanzlei, erste Buchung ohne Objekt") << qint64(0) << true << 0 << -1;
        QTest::newRow("Kanzlei, erste Buchung mit Objekt") << qint64(0) << true << 1 << 1;
        QTest::newRow("Objekt, erste Buchung mit Objekt") << qint64(1) << true << 1 << -1;
        QTest::newRow("Objekt, erste Buchung ohne Objekt") << qint64(1) << true << 0 << 0;
        // Any code but 0 counts as a property account here.
        QTest::newRow("anderer Code, ohne Objekt") << qint64(7) << true << 0 << 0;
        QTest::newRow("anderer Code, mit Objekt") << qint64(7) << true << 1 << -1;
    }

    void typusKorrektur()
    {
        QFETCH(qint64, typus);
        QFETCH(bool, buchungen);
        QFETCH(int, mitObjekt);
        QFETCH(int, erwartet);
        const auto k = creditors::regeln::typusKorrektur(typus, buchungen, mitObjekt);
        QCOMPARE(k.value_or(-1), erwartet);
    }

    void buchungMitObjekt_data()
    {
        QTest::addColumn<QVariant>("objNr");
        QTest::addColumn<int>("erwartet");
        QTest::newRow("0") << QVariant(qlonglong(0)) << 0;
        QTest::newRow("0.0") << QVariant(0.0) << 0;
        QTest::newRow("Text 0") << QVariant(QStringLiteral("0")) << 0;
        QTest::newRow("17") << QVariant(qlonglong(17)) << 1;
        QTest::newRow("negativ") << QVariant(qlonglong(-3)) << 1;
        QTest::newRow("Null der Datenbank") << QVariant(QMetaType::fromType<qlonglong>()) << 1;
        QTest::newRow("leer") << QVariant() << 1;
        QTest::newRow("Text") << QVariant(QStringLiteral("x")) << 1;
    }

    void buchungMitObjekt()
    {
        QFETCH(QVariant, objNr);
        QFETCH(int, erwartet);
        QCOMPARE(creditors::regeln::buchungMitObjekt(objNr), erwartet);
    }

    void typusGueltig_data()
    {
        QTest::addColumn<QString>("feld");
        QTest::addColumn<bool>("gueltig");
        QTest::newRow("0") << "0" << true;
        QTest::newRow("1") << "1" << true;
        QTest::newRow("mit Blanks") << " 1 " << true;
        QTest::newRow("2") << "2" << false;
        QTest::newRow("negativ") << "-1" << false;
        QTest::newRow("leer") << "" << false;
        QTest::newRow("Text") << "a" << false;
        QTest::newRow("Kommazahl") << "0,5" << false;
    }

    void typusGueltig()
    {
        QFETCH(QString, feld);
        QFETCH(bool, gueltig);
        QCOMPARE(creditors::regeln::typusGueltig(typusCode(feld), 2), gueltig);
    }

    void nummern_data()
    {
        QTest::addColumn<QString>("feld");
        QTest::addColumn<bool>("null");
        QTest::addColumn<int>("nr"); // -1: raises 13
        QTest::newRow("leer") << "" << true << 0;
        QTest::newRow("Blanks") << "   " << true << 0;
        QTest::newRow("0") << "0" << true << 0;
        QTest::newRow("000") << "000" << true << 0;
        QTest::newRow("123") << "123" << false << 123;
        QTest::newRow("führende Null") << "0123" << false << 123;
        QTest::newRow("sechs Zeichen") << "123   " << false << 123;
        QTest::newRow("Text") << "abc" << true << -1;
    }

    void nummern()
    {
        QFETCH(QString, feld);
        QFETCH(bool, null);
        QFETCH(int, nr);
        QCOMPARE(istNull(feld), null);
        if (nr < 0) {
            try {
                kontoNr(feld);
                QFAIL("kein Fehler");
            } catch (const platform::RuntimeError &e) {
                QCOMPARE(e.nummer(), 13);
            }
        } else {
            QCOMPARE(kontoNr(feld), nr);
        }
    }

    void texte()
    {
        QCOMPARE(nichtExistentFrage(42),
                 "das KreditorenKonto mit der Nummer: 42 ist nicht existent\r\n\r\n"
                 "Klicken Sie \"JA\" oder Enter wenn Sie eine andere Auswahl treffen möchten "
                 "\r\noder \"Nein\" wenn Sie einen neuen KreditorenKontenStammsatz eröffnen "
                 "wollen:");
        QCOMPARE(typusKorrigiert(Objektkonto),
                 "Der KontoTypus \"Kanzleikonto\" ist ungültig, da bereits Buchungen mit "
                 "Objektnummer gespeichert sind.\r\nDer KontoTypus wird auf \"ObjektKonto\" "
                 "berichtigt.");
        QCOMPARE(typusKorrigiert(Kanzleikonto),
                 "Der KontoTypus \"Objektkonto\" ist ungültig, da bereits Buchungen mit "
                 "Objektnummer NULL gespeichert sind.\r\nDer KontoTypus wird auf "
                 "\"Kanzleikonto\" berichtigt.");
        QCOMPARE(nichtLoeschbar("200"),
                 "KreditorenKonto mit der Konto-Nr: 200 ist nicht löschbar, da Buchungen zu "
                 "diesem Konto existieren.");
    }
};

QTEST_GUILESS_MAIN(TestKreditorenregeln)
#include "tst_kreditorenregeln.moc"
