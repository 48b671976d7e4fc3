// F1 opens the session's help file at the context of the focused control.
#include "frame/Onlinehilfe.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/MsgBox.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

namespace mks = mdlKontenStamm;

class tst_Onlinehilfe : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void kontextDesFokus_data();
    void kontextDesFokus();
    void ohneHilfedateiWirdNichtsGeoeffnet();

private:
    QTemporaryDir m_dir;
    QString m_datei;
    QList<QUrl> m_geoeffnet;
};

void tst_Onlinehilfe::initTestCase()
{
    m_datei = m_dir.filePath(QStringLiteral("hilfe.html"));
    QFile f(m_datei);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write("<html><body><h2 id=\"inpKontoNr\">Kontonummer</h2>"
            "<h2 id=\"frmTest\">Maske</h2></body></html>");
    f.close();
    mks::AufrufInfo = QVariantList(mks::AufrufInfoGroesse);
    mks::AufrufInfo[mks::slot::Hilfedatei] = m_datei;
    platform::MsgBoxProtokoll boxen;
    mdlFehlerZL::HilfeAufrufChk();
    QVERIFY(mks::HilfeVorhanden);
    QCOMPARE(boxen.anzahl(), 0);
    frame::setHilfeOeffner([this](const QUrl &url) {
        m_geoeffnet.append(url);
        return true;
    });
}

void tst_Onlinehilfe::cleanupTestCase()
{
    frame::setHilfeOeffner({});
}

void tst_Onlinehilfe::kontextDesFokus_data()
{
    QTest::addColumn<QString>("fokus");
    QTest::addColumn<QString>("fragment");
    QTest::newRow("eigene Kontextangabe") << "inpMitKontext"
                                          << "seite7";
    QTest::newRow("Kontext des Rahmens") << "inpImRahmen"
                                         << "seite2";
    QTest::newRow("Anker mit dem Namen des Feldes") << "inpKontoNr"
                                                    << "inpKontoNr";
    QTest::newRow("sonst die Maske") << "cmdOhne"
                                     << "frmTest";
}

void tst_Onlinehilfe::kontextDesFokus()
{
    QFETCH(QString, fokus);
    QFETCH(QString, fragment);

    QWidget form;
    form.setObjectName(QStringLiteral("frmTest"));
    auto *mitKontext = new QLineEdit(&form);
    mitKontext->setObjectName(QStringLiteral("inpMitKontext"));
    mitKontext->setProperty("HelpContextID", QStringLiteral("seite7"));
    auto *rahmen = new QGroupBox(&form);
    rahmen->setProperty("HelpContextID", QStringLiteral("seite2"));
    (new QLineEdit(rahmen))->setObjectName(QStringLiteral("inpImRahmen"));
    (new QLineEdit(&form))->setObjectName(QStringLiteral("inpKontoNr"));
    (new QPushButton(&form))->setObjectName(QStringLiteral("cmdOhne"));
    new frame::F1Hilfe(&form);
    form.show();
    QApplication::setActiveWindow(&form);
    QVERIFY(QTest::qWaitForWindowActive(&form));

    auto *ziel = form.findChild<QWidget *>(fokus);
    QVERIFY(ziel);
    ziel->setFocus();
    m_geoeffnet.clear();
    QTest::keyClick(ziel, Qt::Key_F1);
    QCOMPARE(m_geoeffnet.size(), 1);
    QCOMPARE(m_geoeffnet.first().fragment(), fragment);
    QCOMPARE(m_geoeffnet.first().toLocalFile(), QFileInfo(m_datei).absoluteFilePath());
}

void tst_Onlinehilfe::ohneHilfedateiWirdNichtsGeoeffnet()
{
    mks::AufrufInfo[mks::slot::Hilfedatei] = m_dir.filePath(QStringLiteral("fehlt.html"));
    platform::MsgBoxProtokoll boxen;
    boxen.antworte(platform::vbOK);
    mdlFehlerZL::HilfeAufrufChk();
    QVERIFY(!mks::HilfeVorhanden);
    QVERIFY(boxen.letzter().text.contains(QStringLiteral("ist nicht auffindbar.")));
    m_geoeffnet.clear();
    QWidget form;
    QVERIFY(!frame::hilfeZeigen(&form));
    QVERIFY(m_geoeffnet.isEmpty());
}

QTEST_MAIN(tst_Onlinehilfe)
#include "tst_onlinehilfe.moc"
