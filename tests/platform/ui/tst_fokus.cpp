#include "platform/ui/Fokus.h"

#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using platform::Fokus;

class TestFokus : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QDialog> m_dlg;
    QLineEdit *m_nr = nullptr;
    QLineEdit *m_bez = nullptr;
    QPushButton *m_liste = nullptr;
    QPushButton *m_hilfe = nullptr;
    QPushButton *m_einlesen = nullptr;
    Fokus *m_fokus = nullptr;
    QStringList m_log; // what ran, with the receiving control's name
    bool m_ablehnen = false;

    void protokollieren(const QString &was)
    {
        m_log.append(was + u':' + m_fokus->empfaengerName());
    }

    void fokusAuf(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), w);
    }

private slots:
    void init()
    {
        m_dlg = std::make_unique<QDialog>();
        auto *l = new QVBoxLayout(m_dlg.get());
        const auto feld = [&](const char *name) {
            auto *e = new QLineEdit(m_dlg.get());
            e->setObjectName(QString::fromLatin1(name));
            l->addWidget(e);
            return e;
        };
        const auto knopf = [&](const char *name) {
            auto *b = new QPushButton(QString::fromLatin1(name), m_dlg.get());
            b->setObjectName(QString::fromLatin1(name));
            b->setAutoDefault(false);
            l->addWidget(b);
            return b;
        };
        m_nr = feld("inpKontoNr");
        m_bez = feld("inpKontoBezeichnung");
        m_liste = knopf("cmdKontoListe");
        m_hilfe = knopf("cmdHilfe");
        m_einlesen = knopf("cmdKontoEinlesen");
        m_fokus = new Fokus(m_dlg.get());
        m_log.clear();
        m_ablehnen = false;
        m_fokus->setValidate(m_nr, [this](bool &cancel) {
            protokollieren("Validate");
            cancel = m_ablehnen;
        });
        m_fokus->setLostFocus(m_nr, [this] { protokollieren("LostFocus"); });
        m_fokus->setGotFocus(m_bez, [this] { protokollieren("GotFocus"); });
        m_fokus->setCausesValidation(m_hilfe, false);
        for (auto *b : {m_liste, m_hilfe, m_einlesen}) {
            connect(b, &QPushButton::clicked, this, [this, b] {
                m_log.append("Click " + b->objectName() + u':' + m_fokus->empfaengerName());
            });
        }
        m_dlg->show();
        QApplication::setActiveWindow(m_dlg.get());
        QVERIFY(QTest::qWaitForWindowActive(m_dlg.get()));
        fokusAuf(m_nr);
        m_log.clear();
    }

    void cleanup() { m_dlg.reset(); }

    void validateUndLostFocusSehenDenEmpfaenger_data()
    {
        QTest::addColumn<QString>("ziel");
        QTest::addColumn<bool>("ablehnen");
        QTest::addColumn<QStringList>("erwartet");
        QTest::addColumn<QString>("fokusDanach");
        QTest::newRow("weiter") << "inpKontoBezeichnung" << false
                                << QStringList {"Validate:inpKontoBezeichnung",
                                                "LostFocus:inpKontoBezeichnung",
                                                "GotFocus:inpKontoBezeichnung"}
                                << "inpKontoBezeichnung";
        QTest::newRow("abgelehnt") << "inpKontoBezeichnung" << true
                                   << QStringList {"Validate:inpKontoBezeichnung"} << "inpKontoNr";
        const QStringList zurListe {"Validate:cmdKontoListe", "LostFocus:cmdKontoListe"};
        QTest::newRow("zur Liste") << "cmdKontoListe" << false << zurListe << "cmdKontoListe";
        // A control that does not cause validation gets the focus without Validate.
        QTest::newRow("ohne Validierung")
            << "cmdHilfe" << true << QStringList {"LostFocus:cmdHilfe"} << "cmdHilfe";
    }

    void validateUndLostFocusSehenDenEmpfaenger()
    {
        QFETCH(QString, ziel);
        QFETCH(bool, ablehnen);
        QFETCH(QStringList, erwartet);
        QFETCH(QString, fokusDanach);
        m_ablehnen = ablehnen;
        m_dlg->findChild<QWidget *>(ziel)->setFocus(Qt::OtherFocusReason);
        QCOMPARE(m_log, erwartet);
        QCOMPARE(QApplication::focusWidget()->objectName(), fokusDanach);
        // Outside the handlers the active control is the focus widget again.
        QCOMPARE(m_fokus->empfaengerName(), fokusDanach);
    }

    void tabUndShiftTab()
    {
        m_ablehnen = true;
        QTest::keyClick(m_nr, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_nr);
        QCOMPARE(m_log, QStringList {"Validate:inpKontoBezeichnung"});
        m_ablehnen = false;
        QTest::keyClick(m_nr, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), m_bez);
        m_log.clear();
        QTest::keyClick(m_bez, Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(QApplication::focusWidget(), m_nr);
        QVERIFY(m_log.isEmpty()); // the designation field has no handlers
    }

    void klickNachAbgelehnterValidierungLaeuftNicht()
    {
        m_ablehnen = true;
        QTest::mouseClick(m_liste, Qt::LeftButton);
        QCOMPARE(QApplication::focusWidget(), m_nr);
        QCOMPARE(m_log, QStringList {"Validate:cmdKontoListe"});
        QVERIFY(!m_liste->isDown());
        // A button that causes no validation runs although the field would refuse.
        m_log.clear();
        QTest::mouseClick(m_hilfe, Qt::LeftButton);
        QCOMPARE(m_log, (QStringList {"LostFocus:cmdHilfe", "Click cmdHilfe:cmdHilfe"}));
        fokusAuf(m_nr);
        // Accepted: the click runs after LostFocus, and the button now is the active control.
        m_ablehnen = false;
        m_log.clear();
        QTest::mouseClick(m_liste, Qt::LeftButton);
        QCOMPARE(m_log,
                 (QStringList {"Validate:cmdKontoListe", "LostFocus:cmdKontoListe",
                               "Click cmdKontoListe:cmdKontoListe"}));
        // A later click on a button that was refused once works normally.
        fokusAuf(m_bez);
        m_log.clear();
        QTest::mouseClick(m_liste, Qt::LeftButton);
        QCOMPARE(m_log, QStringList {"Click cmdKontoListe:cmdKontoListe"});
    }

    void enterAufStandardknopf()
    {
        m_einlesen->setDefault(true);
        m_ablehnen = true;
        QTest::keyClick(m_nr, Qt::Key_Return);
        QCOMPARE(m_log, QStringList {"Validate:cmdKontoEinlesen"});
        QCOMPARE(QApplication::focusWidget(), m_nr);
        // Accepted: no LostFocus, and the click sees the number field as the active control.
        m_ablehnen = false;
        m_log.clear();
        QTest::keyClick(m_nr, Qt::Key_Return);
        QCOMPARE(m_log,
                 (QStringList {"Validate:cmdKontoEinlesen", "Click cmdKontoEinlesen:inpKontoNr"}));
        QCOMPARE(QApplication::focusWidget(), m_nr);
    }

    void handlerSetztDenFokusSelbst()
    {
        // The original's "focus back into the field" from LostFocus raises nothing further.
        m_fokus->setLostFocus(m_nr, [this] {
            protokollieren("LostFocus");
            m_nr->setFocus();
        });
        m_bez->setFocus();
        QCOMPARE(QApplication::focusWidget(), m_nr);
        QCOMPARE(m_log,
                 (QStringList {"Validate:inpKontoBezeichnung", "LostFocus:inpKontoBezeichnung"}));
        // A Validate that cancels after putting the focus elsewhere is respected.
        m_log.clear();
        m_fokus->setValidate(m_nr, [this](bool &cancel) {
            m_liste->setFocus();
            cancel = true;
        });
        m_bez->setFocus();
        QCOMPARE(QApplication::focusWidget(), m_liste);
    }

    void ohneFokuswechselWirdDasFeldVerlassen_data()
    {
        QTest::addColumn<bool>("ablehnen");
        QTest::newRow("angenommen") << false;
        QTest::newRow("abgelehnt") << true;
    }
    void ohneFokuswechselWirdDasFeldVerlassen()
    {
        // A button that never takes the focus (a data control's arrow), and an action that
        // moves no focus at all (a page header, a record move): both ask the field first.
        QFETCH(bool, ablehnen);
        auto *pfeil = new QToolButton(m_dlg.get());
        pfeil->setObjectName("pfeil");
        pfeil->setFocusPolicy(Qt::NoFocus);
        pfeil->show();
        connect(pfeil, &QToolButton::clicked, this, [this] { m_log.append("Click pfeil"); });
        m_ablehnen = ablehnen;
        QTest::mouseClick(pfeil, Qt::LeftButton);
        QStringList erwartet {"Validate:pfeil"};
        if (!ablehnen)
            erwartet << "Click pfeil";
        QCOMPARE(m_log, erwartet);
        m_log.clear();
        QCOMPARE(m_fokus->verlassen(m_bez), !ablehnen);
        QCOMPARE(m_log, QStringList {"Validate:inpKontoBezeichnung"});
        // A target that causes no validation asks nothing; the focus never moved.
        m_log.clear();
        QVERIFY(m_fokus->verlassen(m_hilfe));
        QVERIFY(m_log.isEmpty());
        QCOMPARE(QApplication::focusWidget(), m_nr);
    }

    void andereFensterLoesenNichtsAus()
    {
        QDialog anderes;
        anderes.show();
        QApplication::setActiveWindow(&anderes);
        QVERIFY(QTest::qWaitForWindowActive(&anderes));
        QApplication::setActiveWindow(m_dlg.get());
        QVERIFY(QTest::qWaitForWindowActive(m_dlg.get()));
        QTRY_COMPARE(QApplication::focusWidget(), m_nr);
        QVERIFY(m_log.isEmpty());
    }
};

QTEST_MAIN(TestFokus)
#include "tst_fokus.moc"
