#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantList>

class QDialog;

// The account master component as the suite's host programs see it. A host creates it, hands
// it the call information and lets it run the general-ledger account master screen modally.
// Events reach the host through the signals; only dllKontenStammEvent is ever raised (3 when the
// object is released, and the numbers given to EreignisMelden).
class Q_DECL_EXPORT zelKontenStamm : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool Programmende_OK READ Programmende_OK WRITE setProgrammende_OK)

public:
    explicit zelKontenStamm(QObject *parent = nullptr);
    // Unloads the account master screen and raises dllKontenStammEvent(3).
    ~zelKontenStamm() override;

    // Exists for the host's uniform call protocol; does nothing.
    Q_INVOKABLE void enden();

    // Runs the general-ledger account master for the call information in Info (slot 0 database,
    // 7 help file, 9 call kind, 10 booking year, 11 processing year, 42 host variant) and returns
    // when the screen is closed. Every call loads the screen anew for its own database and year;
    // closing unloads it, ausblenden only hides it (a later call unloads it first). Conversion
    // errors of the slots reach the caller as platform::RuntimeError (9 for a missing slot, 13 for
    // a value that cannot be converted); errors while the screen runs go to the common error
    // report.
    Q_INVOKABLE void Kontenstamm_Aufruf(QVariantList &Info);

    // Retired entry: only tells the user that the creditor master has been replaced.
    Q_INVOKABLE void KreditorenKontenstamm_Aufruf(QVariantList &Info);

    // The creditor screen for the host program's --kreditoren option: the session is taken over
    // as by Kontenstamm_Aufruf, then the screen runs modally. (The suite's own entry above was
    // retired and only shows its notice.)
    Q_INVOKABLE void KreditorenBildschirm_Aufruf(QVariantList &Info);

    Q_INVOKABLE void einblenden();
    Q_INVOKABLE void ausblenden();
    Q_INVOKABLE void SetzenFocus();

    bool Programmende_OK() const;
    void setProgrammende_OK(bool wert);

    // Not part of the host interface: the screens report events through it.
    void EreignisMelden(qint16 eventnr);

    // The loaded account master screen, or null.
    QDialog *bildschirm() const;

signals:
    void asch();
    void frmKontenStammEvent(qint16 eventnr);
    void dllKontenStammEvent(qint16 eventnr);
    void frmSchlTabEvent(qint16 SchlTabEventNr);

private:
    // Loads a new screen for the session's database and year (unloading an earlier one).
    void bildschirmLaden();
    void bildschirmEntladen();
    bool sitzungUebernehmen(QVariantList &Info);

    QPointer<QDialog> m_frmKontenStamm;
    // The loaded screen was closed (and is to be unloaded).
    bool m_entladen = false;
};
