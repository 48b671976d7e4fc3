// Connect strings of the data controls and the password setter's error text.
#include "frame/Datenbanksitzung.h"
#include "frame/mdlKontenStamm.h"

#include <QTest>

class TestDatenbanksitzung : public QObject
{
    Q_OBJECT

private slots:
    void verbindungsText_data()
    {
        QTest::addColumn<QVariant>("slot4");
        QTest::addColumn<QString>("programm");
        QTest::addColumn<QString>("verbindungsArt");
        QTest::addColumn<QString>("erwartet");
        QTest::addColumn<QString>("slot4Danach");
        const QString a2000 = QStringLiteral("Access 2000;");
        const QString access = QStringLiteral("Access;");
        const QString gl = QStringLiteral("frmKontenStamm");
        const QString import = QStringLiteral("ZELDokImport");
        auto mitPasswort = [](const QString &p) {
            return p + QStringLiteral("pwd=kellerabteil4;");
        };
        QTest::newRow("access 2000")
            << QVariant(a2000) << gl << QString() << mitPasswort(a2000) << a2000;
        QTest::newRow("other text") << QVariant(QStringLiteral("Access 97;")) << gl << QString()
                                    << mitPasswort(access) << access;
        QTest::newRow("empty text")
            << QVariant(QString()) << gl << QString() << mitPasswort(access) << access;
        QTest::newRow("empty slot")
            << QVariant() << gl << QString() << mitPasswort(access) << access;
        QTest::newRow("number") << QVariant(2000) << gl << QString() << mitPasswort(access)
                                << access;
        // The document import uses its own connect prefix and leaves slot 4 alone.
        QTest::newRow("import 2000") << QVariant(QStringLiteral("x")) << import << a2000
                                     << mitPasswort(a2000) << QStringLiteral("x");
        QTest::newRow("import other")
            << QVariant(a2000) << import << QStringLiteral("Jet;") << mitPasswort(access) << a2000;
    }
    void verbindungsText()
    {
        QFETCH(QVariant, slot4);
        QFETCH(QString, programm);
        QFETCH(QString, verbindungsArt);
        QFETCH(QString, erwartet);
        QFETCH(QString, slot4Danach);
        QVariantList info(mdlKontenStamm::AufrufInfoGroesse);
        info[4] = slot4;
        QString art = verbindungsArt;
        QCOMPARE(frame::datenSteuerungConnect(info, art, programm, QStringLiteral("kellerabteil4")),
                 erwartet);
        QCOMPARE(info.at(4).toString(), slot4Danach);
    }

    void passwortFehler()
    {
        QCOMPARE(frame::passwortFehlerText(3031, QStringLiteral("Kein gültiges Kennwort.")),
                 QStringLiteral("The following error has occured.\r\n\r\nError Number: 3031\r\n"
                                "Error Source: Set_DBPassword\r\nError Description: "
                                "Kein gültiges Kennwort."));
    }
};

QTEST_GUILESS_MAIN(TestDatenbanksitzung)
#include "tst_datenbanksitzung.moc"
