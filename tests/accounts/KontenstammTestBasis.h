#pragma once

// The account screen under test on the shared screen test set-up, with helpers to type, read
// what was stored and answer the copy dialog.
#include "accounts/frmKoBeginn.h"
#include "accounts/frmKontenStamm.h"
#include "common/Bildschirmtest.h"
#include "frame/Hilfefenster.h"
#include "frame/mdlKontenStamm.h"
#include "platform/core/CreateObject.h"
#include "platform/ui/DataControl.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

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

class KontenstammTestBasis : public BildschirmTestBasis
{
protected:
    std::unique_ptr<frmKontenStamm> m_form;
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
        zeigen(m_form.get());
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
        sitzungAnlegen("frmKontenStamm");
    }

    void basisCleanup()
    {
        qApp->removeEventFilter(this);
        m_wache.reset();
        delete frame::Hilfefenster::offenes();
        m_form.reset();
        sitzungBeenden();
    }
};
