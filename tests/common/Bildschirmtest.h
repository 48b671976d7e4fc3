#pragma once

// Shared set-up of the tests that drive a screen: a fresh database per test on the engine of the
// run, a message box recorder answering OK boxes, a stand-in for the suite's error dialog, and
// helpers to move the focus, press keys and act in a modal dialog. A test program lists this
// header among its sources, so that its stand-in is compiled with it.
#include "common/TestDatenbank.h"
#include "frame/Hilfefenster.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

// Stands in for the suite's error dialog: remembers number and place of every report.
class FehlerDialogAttrappe : public QObject
{
    Q_OBJECT
public:
    static inline QStringList s_berichte; // "number|place"
    Q_INVOKABLE void Uebergeben(int nr, const QString &, const QString &, const QString &,
                                const QString &, const QString &ort, const QString &,
                                const QString &, bool)
    {
        s_berichte.append(QString::number(nr) + u'|' + ort);
    }
    Q_INVOKABLE void Anzeigen() { }
    Q_INVOKABLE qint16 Ergebnis() const { return 1; }
};

class BildschirmTestBasis : public QObject
{
protected:
    using Database = platform::storage::Database;

    QString m_ort;
    std::shared_ptr<Database> m_db;
    std::unique_ptr<platform::MsgBoxProtokoll> m_boxen;
    std::unique_ptr<platform::KomponentenRegistrierung> m_fehlerDialog;

    // A new session of the component for `programm` on a fresh database of booking year 2003.
    void sitzungAnlegen(const QString &programm)
    {
        namespace mks = mdlKontenStamm;
        mks::zuruecksetzen();
        // The host hands over its help file; the screen checks it when it loads.
        mks::AufrufInfo[mks::slot::Hilfedatei] = QStringLiteral(ZEP_HILFE_QUELLE);
        FehlerDialogAttrappe::s_berichte.clear();
        m_fehlerDialog = std::make_unique<platform::KomponentenRegistrierung>(
            "zelAllgError", [] { return std::make_unique<FehlerDialogAttrappe>(); });
        mdlFehlerZL::alsFehlerberichtEinrichten();
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        platform::storage::schemaAnlegen(*m_db);
        mks::DatenbankPfad = m_ort;
        mks::Buchungsjahr = 2003;
        mks::VerarbeitungsBuchungsjahr = 2003;
        mks::AktuellesProgramm = programm;
        m_boxen = std::make_unique<platform::MsgBoxProtokoll>();
        // OK boxes need no script; every question must be answered by the test.
        m_boxen->setAntwortFunktion([](const platform::MsgBoxEintrag &e) {
            return (e.buttons & 7) == platform::vbOKOnly ? platform::vbOK : 0;
        });
    }

    // Ends the session after the screen is gone: no box left unanswered or unexpected, and no
    // error report the test did not take.
    void sitzungBeenden()
    {
        delete frame::Hilfefenster::offenes();
        m_db.reset();
        const QStringList warnungen = m_boxen->warnungen();
        const qsizetype offen = m_boxen->offeneAntworten();
        m_boxen.reset();
        m_fehlerDialog.reset();
        QVERIFY2(warnungen.isEmpty(), qPrintable(warnungen.join('\n')));
        QCOMPARE(offen, 0);
        QVERIFY2(FehlerDialogAttrappe::s_berichte.isEmpty() || QTest::currentTestFailed(),
                 qPrintable(FehlerDialogAttrappe::s_berichte.join('\n')));
    }

    static void zeigen(QWidget *form)
    {
        form->show();
        QApplication::setActiveWindow(form);
        QVERIFY(QTest::qWaitForWindowActive(form));
    }
    static void fokusAuf(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), w);
    }
    // Moves the focus as the user would; a check may put it back elsewhere.
    static void fokusVersuch(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QCoreApplication::processEvents();
    }
    static void taste(int key, Qt::KeyboardModifiers mod = Qt::NoModifier)
    {
        QWidget *f = QApplication::focusWidget();
        QVERIFY(f);
        QTest::keyClick(f, Qt::Key(key), mod);
    }

    // Runs `schritt` on the dialog of type D once it is shown modally; `gesehen` stays false
    // when none appears within three seconds.
    template<class D> static void imDialog(bool &gesehen, std::function<void(D &)> schritt)
    {
        gesehen = false;
        auto versuch = std::make_shared<std::function<void(int)>>();
        *versuch = [&gesehen, schritt, versuch](int rest) {
            if (auto *d = qobject_cast<D *>(QApplication::activeModalWidget())) {
                gesehen = true;
                schritt(*d);
                return;
            }
            if (rest > 0)
                QTimer::singleShot(10, [versuch, rest] { (*versuch)(rest - 1); });
        };
        QTimer::singleShot(0, [versuch] { (*versuch)(300); });
    }
};
