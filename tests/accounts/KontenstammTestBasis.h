#pragma once

// The account screen under test: a fresh database per test on the engine of the run, a message
// box recorder answering OK boxes, a stand-in for the suite's error dialog, and helpers to type,
// press keys and read what was stored.
#include "accounts/frmKoBeginn.h"
#include "accounts/frmKontenStamm.h"
#include "common/TestDatenbank.h"
#include "frame/Hilfefenster.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/storage/Database.h"
#include "platform/storage/Schema.h"
#include "platform/ui/DataControl.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QLineEdit>
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

// Stands in for the account list: counts its calls, keeps the parameter array it was handed and
// returns the number the test chose (null: closed without a choice).
class ListeAttrappe : public QObject
{
    Q_OBJECT
public:
    static inline int s_aufrufe = 0;
    static inline QVariantList s_info;
    static inline QVariant s_auswahl;
    Q_INVOKABLE void KontenListe(const QVariant &info)
    {
        ++s_aufrufe;
        s_info = info.toList();
    }
    Q_INVOKABLE QVariant AuswahlNr() const { return s_auswahl; }
};

class KontenstammTestBasis : public QObject
{
    Q_OBJECT

protected:
    using Database = platform::storage::Database;

    QString m_ort;
    std::shared_ptr<Database> m_db;
    std::unique_ptr<platform::MsgBoxProtokoll> m_boxen;
    std::unique_ptr<frmKontenStamm> m_form;
    std::unique_ptr<platform::KomponentenRegistrierung> m_fehlerDialog;
    // What the copy dialog meets when it is shown after an opening; closed without a choice
    // unless a test sets its own step.
    std::function<void(frmKoBeginn &)> m_kopierDialog;
    int m_kopierDialoge = 0;
    // Other modal dialogs (the number dialog, ...) that came up while fremdeDialogeAbweisen()
    // watched; each is cancelled at once, so a test that expects none cannot hang.
    int m_fremdeDialoge = 0;
    std::unique_ptr<QTimer> m_wache;

    void fremdeDialogeAbweisen()
    {
        m_wache = std::make_unique<QTimer>();
        m_wache->setInterval(10);
        QObject::connect(m_wache.get(), &QTimer::timeout, [this] {
            auto *d = qobject_cast<QDialog *>(QApplication::activeModalWidget());
            if (d && d != m_form.get() && !qobject_cast<frmKoBeginn *>(d)) {
                ++m_fremdeDialoge;
                d->reject();
            }
        });
        m_wache->start();
    }

    bool eventFilter(QObject *obj, QEvent *ev) override
    {
        if (ev->type() == QEvent::Show) {
            if (auto *d = qobject_cast<frmKoBeginn *>(obj)) {
                ++m_kopierDialoge;
                QPointer<frmKoBeginn> dialog(d);
                QTimer::singleShot(0, this, [this, dialog] {
                    if (!dialog)
                        return;
                    if (m_kopierDialog)
                        m_kopierDialog(*dialog);
                    else
                        dialog->reject();
                });
            }
        }
        return QObject::eventFilter(obj, ev);
    }

    template<class T = QWidget> T *c(const char *name)
    {
        auto *w = m_form->findChild<T *>(QString::fromUtf8(name));
        if (!w)
            qFatal("Steuerelement %s fehlt", name);
        return w;
    }
    QLineEdit *nrFeld() { return c<QLineEdit>("inpKontoNr"); }
    platform::DataControl *kk() { return c<platform::DataControl>("KKData"); }
    QString aktuell() { return kk()->rs().feld("KontoNr").toString(); }

    void konto(const QString &nr, const QString &name, int jahr = 2003)
    {
        m_db->execute("INSERT INTO ObjKanzleiKontenstamm (KontoNr, KontoJJ, KontoBezeichnung) "
                      "VALUES (?, ?, ?)",
                      {nr, jahr, name});
    }
    QVariant gespeichert(const QString &nr, const QString &feld, int jahr = 2003)
    {
        return m_db->scalar("SELECT " + feld
                                + " FROM ObjKanzleiKontenstamm WHERE KontoNr = ? AND KontoJJ = ?",
                            {nr, jahr});
    }
    qlonglong konten(int jahr = 2003)
    {
        return m_db->scalar("SELECT COUNT(*) FROM ObjKanzleiKontenstamm WHERE KontoJJ = ?", {jahr})
            .toLongLong();
    }
    void standardKonten()
    {
        konto("1000", "Kassa");
        konto("1200", "Bank");
        konto("2000", "Lieferanten");
        konto("5000", "Anderes Jahr", 2002);
    }

    void oeffnen()
    {
        m_form = std::make_unique<frmKontenStamm>();
        m_form->show();
        QApplication::setActiveWindow(m_form.get());
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }
    // The anchor the help window shows ("" when it is not open).
    static QString hilfeAnker()
    {
        auto *h = frame::Hilfefenster::offenes();
        return h && h->isVisible() ? h->anker() : QString();
    }
    // Closes the help window and gives the screen the keyboard back.
    void hilfeSchliessen()
    {
        if (auto *h = frame::Hilfefenster::offenes())
            h->close();
        QApplication::setActiveWindow(m_form.get());
        QVERIFY(QTest::qWaitForWindowActive(m_form.get()));
    }
    void fokusAuf(QWidget *w)
    {
        w->setFocus(Qt::OtherFocusReason);
        QTRY_COMPARE(QApplication::focusWidget(), w);
    }
    void taste(Qt::Key key)
    {
        QWidget *f = QApplication::focusWidget();
        QVERIFY(f);
        QTest::keyClick(f, key);
    }
    // Types `text` into the number field (replacing it) and presses Enter.
    void nummerLesen(const QString &text)
    {
        fokusAuf(nrFeld());
        nrFeld()->setText(text);
        QTest::keyClick(nrFeld(), Qt::Key_Return);
    }
    QStringList titel()
    {
        QStringList t;
        for (const auto &e : m_boxen->eintraege())
            t << e.titel;
        return t;
    }

    void basisInit()
    {
        m_kopierDialog = {};
        m_kopierDialoge = 0;
        m_fremdeDialoge = 0;
        qApp->installEventFilter(this);
        mdlKontenStamm::zuruecksetzen();
        // The host hands over its help file; the screen checks it when it loads.
        mdlKontenStamm::AufrufInfo[mdlKontenStamm::slot::Hilfedatei]
            = QStringLiteral(ZEP_HILFE_QUELLE);
        FehlerDialogAttrappe::s_berichte.clear();
        m_fehlerDialog = std::make_unique<platform::KomponentenRegistrierung>(
            "zelAllgError", [] { return std::make_unique<FehlerDialogAttrappe>(); });
        mdlFehlerZL::alsFehlerberichtEinrichten();
        m_ort = testhilfe::neueDatenbank();
        m_db = Database::open(m_ort);
        platform::storage::schemaAnlegen(*m_db);
        mdlKontenStamm::DatenbankPfad = m_ort;
        mdlKontenStamm::Buchungsjahr = 2003;
        mdlKontenStamm::VerarbeitungsBuchungsjahr = 2003;
        mdlKontenStamm::AktuellesProgramm = "frmKontenStamm";
        m_boxen = std::make_unique<platform::MsgBoxProtokoll>();
        // OK boxes need no script; every question must be answered by the test.
        m_boxen->setAntwortFunktion([](const platform::MsgBoxEintrag &e) {
            return (e.buttons & 7) == platform::vbOKOnly ? platform::vbOK : 0;
        });
    }

    void basisCleanup()
    {
        qApp->removeEventFilter(this);
        m_wache.reset();
        delete frame::Hilfefenster::offenes();
        m_form.reset();
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
};
