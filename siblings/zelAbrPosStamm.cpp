#include "siblings/zelAbrPosStamm.h"

#include "platform/core/RuntimeError.h"
#include "platform/ui/MsgBox.h"
#include "siblings/Auswahlliste.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace siblings {

using platform::MsgBox;
using platform::RuntimeError;
using platform::storage::Database;

namespace {

constexpr int SlotDatenbank = 0;
constexpr int SlotBuchungsjahr = 11;
const QString Titel = QStringLiteral("Positionenstamm");

QString rtrim(const QString &s)
{
    qsizetype n = s.size();
    while (n > 0 && s.at(n - 1) == u' ')
        --n;
    return s.left(n);
}

Stammfeld zahlFeld(const char *spalte, const char *titel, int max, bool schluessel = true)
{
    return {QString::fromUtf8(spalte), QString::fromUtf8(titel), true, 0, 0, max, schluessel};
}

Stammfeld textFeld(const char *spalte, const char *titel, int laenge, bool schluessel = false)
{
    return {QString::fromUtf8(spalte), QString::fromUtf8(titel), false, laenge, 0, 0, schluessel};
}

void fehlerZeigen(const RuntimeError &e)
{
    MsgBox(QStringLiteral("Fehler %1: %2").arg(e.nummer()).arg(e.beschreibung()),
           platform::vbOKOnly | platform::vbExclamation, Titel);
}

// The session's database and year from the parameter array; nullptr with a message when the
// call lacks them or the database cannot be opened.
std::shared_ptr<Database> datenbank(const QVariant &aufrufInfo, int &jahr)
{
    const QVariantList info = aufrufInfo.toList();
    bool ok = false;
    jahr = info.value(SlotBuchungsjahr).toInt(&ok);
    const QString ort = info.value(SlotDatenbank).toString();
    if (ort.isEmpty() || !ok) {
        MsgBox(QStringLiteral("Der Positionenstamm wurde ohne Datenbank oder Buchungsjahr "
                              "aufgerufen."),
               platform::vbOKOnly | platform::vbExclamation, Titel);
        return nullptr;
    }
    try {
        return Database::open(ort);
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
        return nullptr;
    }
}

QString anzeigeText(const QVariant &v)
{
    return v.isNull() ? QString() : rtrim(v.toString());
}

} // namespace

// ---------------------------------------------------------------------------------------------
// The masters

const Stamm &Stamm::bilanzPos()
{
    static const Stamm s {
        QStringLiteral("BilanzPos"),
        QStringLiteral("Bilanzpositionen"),
        {zahlFeld("BilPosAktPass", "Aktiva/Passiva/GuV (1-3)", 9),
         textFeld("BilPosABC", "A,B,C", 2, true), textFeld("BilPosRöm", "I,II,III", 5, true),
         textFeld("BilPosArab", "1,2,3", 3, true), textFeld("BilPosABCklein", "a,b,c", 2, true),
         textFeld("BilPosText", "Text", 120)},
        QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? AND "
                       "KontoBilPosAktPass = ? AND rtrim(KontoBilPosABC) = ? AND "
                       "rtrim(KontoBilPosRöm) = ? AND rtrim(KontoBilPosArab) = ? AND "
                       "rtrim(KontoBilPosABCklein) = ? ORDER BY KontoNr"),
    };
    return s;
}

const Stamm &Stamm::zl7()
{
    static const Stamm s {
        QStringLiteral("BilanzPosZL7"),
        QStringLiteral("Bilanzpositionen (analog ZL7)"),
        {zahlFeld("BilZl7Pos1", "Stufe 1", 9999), zahlFeld("BilZl7Pos2", "Stufe 2", 9999),
         zahlFeld("BilZl7Pos3", "Stufe 3", 9999), textFeld("BilZl7PosText", "Text", 80)},
        QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? AND "
                       "KontoPos1 = ? AND KontoPos2 = ? AND KontoPos3 = ? ORDER BY KontoNr"),
    };
    return s;
}

const Stamm &Stamm::abrPos()
{
    static const Stamm s {
        QStringLiteral("AbrPosBkAbr"),
        QStringLiteral("ÖNORM-Abrechnungspositionen (Ebene 2 = 0: Überschrift)"),
        {zahlFeld("AbrPosBkPos1", "Ebene 1 (I, II, III)", 32767),
         zahlFeld("AbrPosBkPos2", "Ebene 2 (A, B, C)", 32767),
         textFeld("AbrPosBkPosText", "Text", 80)},
        QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? AND "
                       "KontoÖNORMAbrPos_I_II_III = ? AND KontoÖNORMAbrPos_ABC = ? "
                       "ORDER BY KontoNr"),
    };
    return s;
}

const Stamm &Stamm::bkBloecke()
{
    static const Stamm s {
        QStringLiteral("AbrPosBkBlöcke"),
        QStringLiteral("Betriebskosten-Blöcke"),
        {zahlFeld("BkBlockPos", "Block", 32767),
         textFeld("BkBlockText", "Text", 60),
         {QStringLiteral("BkBlockSchlPos"), QStringLiteral("Schlüssel"), true, 0, 0, 2147483647,
          false}},
        QStringLiteral("SELECT KontoNr FROM ObjKanzleiKontenstamm WHERE KontoJJ = ? AND "
                       "KontoBkBlockPos = ? ORDER BY KontoNr"),
    };
    return s;
}

// ---------------------------------------------------------------------------------------------
// Maintenance dialog

Stammpflege::Stammpflege(const Stamm &stamm, std::shared_ptr<Database> db, int jahr,
                         QWidget *parent)
    : QDialog(parent)
    , m_stamm(stamm)
    , m_db(std::move(db))
    , m_jahr(jahr)
{
    setWindowTitle(m_stamm.titel);
    auto *layout = new QVBoxLayout(this);
    m_tabelle = new QTableWidget(this);
    m_tabelle->setObjectName(QStringLiteral("lstStamm"));
    m_tabelle->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_tabelle->setSelectionMode(QAbstractItemView::SingleSelection);
    m_tabelle->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tabelle->verticalHeader()->hide();
    m_tabelle->horizontalHeader()->setStretchLastSection(true);
    QStringList koepfe;
    for (const Stammfeld &f : m_stamm.felder)
        koepfe << f.titel;
    m_tabelle->setColumnCount(int(koepfe.size()));
    m_tabelle->setHorizontalHeaderLabels(koepfe);
    m_tabelle->installEventFilter(this);
    connect(m_tabelle, &QTableWidget::cellDoubleClicked, this, [this] { aendernKlick(); });
    layout->addWidget(m_tabelle);

    auto *knoepfe = new QHBoxLayout;
    const auto knopf = [&](const QString &name, const QString &text, auto handler) {
        auto *b = new QPushButton(text, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, handler);
        knoepfe->addWidget(b);
    };
    knopf(QStringLiteral("cmdNeu"), QStringLiteral("&Neu (Einfg)"), &Stammpflege::neuKlick);
    knopf(QStringLiteral("cmdAendern"), QStringLiteral("Ä&ndern (Eingabe)"),
          &Stammpflege::aendernKlick);
    knopf(QStringLiteral("cmdLoeschen"), QStringLiteral("&Löschen (Entf)"),
          &Stammpflege::loeschenKlick);
    knoepfe->addStretch();
    knopf(QStringLiteral("cmdSchliessen"), QStringLiteral("Schließen"), &QDialog::reject);
    layout->addLayout(knoepfe);
    resize(720, 480);
    laden();
}

void Stammpflege::laden()
{
    m_zeilen.clear();
    QStringList spalten;
    QStringList ordnung;
    for (const Stammfeld &f : m_stamm.felder) {
        spalten << f.spalte;
        if (f.schluessel)
            ordnung << f.spalte;
    }
    try {
        auto c = m_db->query(QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                                 .arg(spalten.join(QStringLiteral(", ")), m_stamm.tabelle,
                                      ordnung.join(QStringLiteral(", "))));
        while (c->next()) {
            QVariantList z;
            for (int i = 0; i < int(spalten.size()); ++i)
                z << c->wert(i);
            m_zeilen.push_back(z);
        }
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
    }
    const int aktuell = std::max(0, m_tabelle->currentRow());
    m_tabelle->setRowCount(int(m_zeilen.size()));
    for (int r = 0; r < int(m_zeilen.size()); ++r) {
        for (int s = 0; s < int(spalten.size()); ++s)
            m_tabelle->setItem(r, s, new QTableWidgetItem(anzeigeText(m_zeilen[size_t(r)][s])));
    }
    if (!m_zeilen.empty())
        m_tabelle->setCurrentCell(std::min(aktuell, int(m_zeilen.size()) - 1), 0);
}

QVariantList Stammpflege::schluessel(const QVariantList &werte) const
{
    QVariantList k;
    for (size_t i = 0; i < m_stamm.felder.size(); ++i) {
        if (m_stamm.felder[i].schluessel) {
            const QVariant &v = werte.value(qsizetype(i));
            k << (m_stamm.felder[i].zahl ? QVariant(v.toLongLong()) : QVariant(anzeigeText(v)));
        }
    }
    return k;
}

std::optional<QVariantList> Stammpflege::pruefen(const QStringList &werte) const
{
    QVariantList ergebnis;
    for (size_t i = 0; i < m_stamm.felder.size(); ++i) {
        const Stammfeld &f = m_stamm.felder[i];
        const QString text = werte.value(qsizetype(i)).trimmed();
        QString fehler;
        if (f.zahl) {
            bool ok = false;
            const qlonglong z = text.toLongLong(&ok);
            if (!ok)
                fehler = QStringLiteral("\"%1\" muss eine ganze Zahl sein.").arg(f.titel);
            else if (z < f.minimum || z > f.maximum)
                fehler = QStringLiteral("\"%1\" muss zwischen %2 und %3 liegen.")
                             .arg(f.titel)
                             .arg(f.minimum)
                             .arg(f.maximum);
            ergebnis << z;
        } else {
            if (text.size() > f.laenge)
                fehler = QStringLiteral("\"%1\" darf höchstens %2 Zeichen lang sein.")
                             .arg(f.titel)
                             .arg(f.laenge);
            ergebnis << text;
        }
        if (!fehler.isEmpty()) {
            MsgBox(fehler, platform::vbOKOnly | platform::vbExclamation,
                   QStringLiteral("Eingabefehler"));
            return std::nullopt;
        }
    }
    return ergebnis;
}

std::pair<qint64, QString> Stammpflege::verwendet(const QVariantList &schluesselWerte) const
{
    auto c = m_db->query(m_stamm.verwendung, QVariantList {m_jahr} + schluesselWerte);
    qint64 anzahl = 0;
    QString erstes;
    while (c->next()) {
        if (anzahl++ == 0)
            erstes = rtrim(c->wert(0).toString());
    }
    return {anzahl, erstes};
}

bool Stammpflege::vorhanden(const QVariantList &schluesselWerte) const
{
    QStringList bedingungen;
    for (const Stammfeld &f : m_stamm.felder) {
        if (f.schluessel)
            bedingungen << (f.zahl ? f.spalte + QStringLiteral(" = ?")
                                   : QStringLiteral("rtrim(%1) = ?").arg(f.spalte));
    }
    return m_db->scalar(QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2")
                            .arg(m_stamm.tabelle, bedingungen.join(QStringLiteral(" AND "))),
                        schluesselWerte)
               .toLongLong()
        > 0;
}

namespace {
QString schluesselText(const QVariantList &k)
{
    QStringList teile;
    for (const QVariant &v : k)
        teile << (v.toString().isEmpty() ? QStringLiteral("-") : v.toString());
    return teile.join(u' ');
}
} // namespace

bool Stammpflege::neu(const QStringList &werte)
{
    const auto geprueft = pruefen(werte);
    if (!geprueft)
        return false;
    try {
        const QVariantList k = schluessel(*geprueft);
        if (vorhanden(k)) {
            MsgBox(QStringLiteral("Position %1 ist bereits vorhanden.").arg(schluesselText(k)),
                   platform::vbOKOnly | platform::vbExclamation, Titel);
            return false;
        }
        QStringList spalten;
        QStringList platzhalter;
        for (const Stammfeld &f : m_stamm.felder) {
            spalten << f.spalte;
            platzhalter << QStringLiteral("?");
        }
        m_db->execute(QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                          .arg(m_stamm.tabelle, spalten.join(QStringLiteral(", ")),
                               platzhalter.join(QStringLiteral(", "))),
                      *geprueft);
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
        return false;
    }
    laden();
    return true;
}

bool Stammpflege::aendern(int zeile, const QStringList &werte)
{
    if (zeile < 0 || zeile >= int(m_zeilen.size()))
        return false;
    const auto geprueft = pruefen(werte);
    if (!geprueft)
        return false;
    try {
        const QVariantList alt = schluessel(m_zeilen[size_t(zeile)]);
        const QVariantList neuK = schluessel(*geprueft);
        if (alt != neuK) {
            if (vorhanden(neuK)) {
                MsgBox(
                    QStringLiteral("Position %1 ist bereits vorhanden.").arg(schluesselText(neuK)),
                    platform::vbOKOnly | platform::vbExclamation, Titel);
                return false;
            }
            const auto [anzahl, erstes] = verwendet(alt);
            if (anzahl > 0) {
                MsgBox(QStringLiteral("Position %1 wird im Buchungsjahr %2 von %3 Konten "
                                      "verwendet (z.B. Konto %4): ihr Schlüssel kann nicht "
                                      "geändert werden.")
                           .arg(schluesselText(alt))
                           .arg(m_jahr)
                           .arg(anzahl)
                           .arg(erstes),
                       platform::vbOKOnly | platform::vbExclamation, Titel);
                return false;
            }
        }
        QStringList setzen;
        QStringList wo;
        for (const Stammfeld &f : m_stamm.felder) {
            setzen << f.spalte + QStringLiteral(" = ?");
            if (f.schluessel)
                wo << (f.zahl ? f.spalte + QStringLiteral(" = ?")
                              : QStringLiteral("rtrim(%1) = ?").arg(f.spalte));
        }
        m_db->execute(QStringLiteral("UPDATE %1 SET %2 WHERE %3")
                          .arg(m_stamm.tabelle, setzen.join(QStringLiteral(", ")),
                               wo.join(QStringLiteral(" AND "))),
                      *geprueft + alt);
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
        return false;
    }
    laden();
    return true;
}

bool Stammpflege::loeschen(int zeile)
{
    if (zeile < 0 || zeile >= int(m_zeilen.size()))
        return false;
    try {
        const QVariantList k = schluessel(m_zeilen[size_t(zeile)]);
        const auto [anzahl, erstes] = verwendet(k);
        if (anzahl > 0) {
            MsgBox(QStringLiteral("Position %1 kann nicht gelöscht werden: sie wird im "
                                  "Buchungsjahr %2 von %3 Konten verwendet (z.B. Konto %4).")
                       .arg(schluesselText(k))
                       .arg(m_jahr)
                       .arg(anzahl)
                       .arg(erstes),
                   platform::vbOKOnly | platform::vbExclamation, Titel);
            return false;
        }
        if (MsgBox(QStringLiteral("Position %1 löschen?").arg(schluesselText(k)),
                   platform::vbYesNo | platform::vbQuestion, Titel)
            != platform::vbYes)
            return false;
        QStringList wo;
        for (const Stammfeld &f : m_stamm.felder) {
            if (f.schluessel)
                wo << (f.zahl ? f.spalte + QStringLiteral(" = ?")
                              : QStringLiteral("rtrim(%1) = ?").arg(f.spalte));
        }
        m_db->execute(QStringLiteral("DELETE FROM %1 WHERE %2")
                          .arg(m_stamm.tabelle, wo.join(QStringLiteral(" AND "))),
                      k);
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
        return false;
    }
    laden();
    return true;
}

namespace {

// The edit form of one row: a field per column; OK checks through `annehmen`.
bool bearbeiten(QWidget *parent, const Stamm &stamm, QStringList werte,
                const std::function<bool(const QStringList &)> &annehmen)
{
    QDialog d(parent);
    d.setWindowTitle(stamm.titel);
    auto *form = new QFormLayout(&d);
    std::vector<QLineEdit *> felder;
    for (size_t i = 0; i < stamm.felder.size(); ++i) {
        auto *e = new QLineEdit(werte.value(qsizetype(i)), &d);
        e->setObjectName(stamm.felder[i].spalte);
        if (!stamm.felder[i].zahl)
            e->setMaxLength(stamm.felder[i].laenge);
        form->addRow(stamm.felder[i].titel + u':', e);
        felder.push_back(e);
    }
    auto *knoepfe = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    knoepfe->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Abbrechen"));
    form->addRow(knoepfe);
    QObject::connect(knoepfe, &QDialogButtonBox::accepted, &d, [&] {
        QStringList eingabe;
        for (QLineEdit *e : felder)
            eingabe << e->text();
        if (annehmen(eingabe))
            d.accept();
    });
    QObject::connect(knoepfe, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    return d.exec() == QDialog::Accepted;
}

} // namespace

void Stammpflege::neuKlick()
{
    bearbeiten(this, m_stamm, {}, [this](const QStringList &w) { return neu(w); });
}

void Stammpflege::aendernKlick()
{
    const int zeile = m_tabelle->currentRow();
    if (zeile < 0)
        return;
    QStringList werte;
    for (const QVariant &v : m_zeilen[size_t(zeile)])
        werte << anzeigeText(v);
    bearbeiten(this, m_stamm, werte,
               [this, zeile](const QStringList &w) { return aendern(zeile, w); });
}

void Stammpflege::loeschenKlick()
{
    loeschen(m_tabelle->currentRow());
}

bool Stammpflege::eventFilter(QObject *obj, QEvent *ev)
{
    if (obj == m_tabelle && ev->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(ev)->key()) {
        case Qt::Key_Insert:
            neuKlick();
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            aendernKlick();
            return true;
        case Qt::Key_Delete:
            loeschenKlick();
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(obj, ev);
}

// ---------------------------------------------------------------------------------------------
// Component

zelAbrPosStamm::zelAbrPosStamm(QObject *parent)
    : QObject(parent)
{ }

void zelAbrPosStamm::BilanzPosAuswahl(const QVariant &aufrufInfo)
{
    auswaehlen(aufrufInfo, Stamm::bilanzPos());
}

void zelAbrPosStamm::Zl7PosAuswahl(const QVariant &aufrufInfo)
{
    auswaehlen(aufrufInfo, Stamm::zl7());
}

void zelAbrPosStamm::BilanzPosStamm(const QVariant &aufrufInfo)
{
    pflegen(aufrufInfo, Stamm::bilanzPos());
}

void zelAbrPosStamm::Zl7PosStamm(const QVariant &aufrufInfo)
{
    pflegen(aufrufInfo, Stamm::zl7());
}

void zelAbrPosStamm::AbrPosStamm(const QVariant &aufrufInfo)
{
    pflegen(aufrufInfo, Stamm::abrPos());
}

void zelAbrPosStamm::BkBlockStamm(const QVariant &aufrufInfo)
{
    pflegen(aufrufInfo, Stamm::bkBloecke());
}

void zelAbrPosStamm::auswaehlen(const QVariant &aufrufInfo, const Stamm &stamm)
{
    m_auswahl = QVariant();
    int jahr = 0;
    auto db = datenbank(aufrufInfo, jahr);
    if (!db)
        return;
    QStringList spalten;
    QStringList koepfe;
    QStringList ordnung;
    for (const Stammfeld &f : stamm.felder) {
        spalten << f.spalte;
        koepfe << f.titel;
        if (f.schluessel)
            ordnung << f.spalte;
    }
    std::vector<QVariantList> werte;
    std::vector<QStringList> zeilen;
    try {
        auto c = db->query(QStringLiteral("SELECT %1 FROM %2 ORDER BY %3")
                               .arg(spalten.join(QStringLiteral(", ")), stamm.tabelle,
                                    ordnung.join(QStringLiteral(", "))));
        while (c->next()) {
            QVariantList w;
            QStringList schluessel;
            QString text;
            for (int i = 0; i < int(spalten.size()); ++i) {
                const Stammfeld &f = stamm.felder[size_t(i)];
                const QVariant v = c->wert(i);
                if (f.schluessel) {
                    w << (f.zahl ? QVariant(int(v.toLongLong())) : QVariant(anzeigeText(v)));
                    schluessel << anzeigeText(v);
                } else {
                    text = anzeigeText(v);
                }
            }
            werte.push_back(w);
            zeilen.push_back({schluessel.join(u' ').simplified(), text});
        }
    } catch (const RuntimeError &e) {
        fehlerZeigen(e);
        return;
    }
    Auswahlliste liste(stamm.titel + QStringLiteral(" auswählen"),
                       {QStringLiteral("Position"), QStringLiteral("Text")}, std::move(zeilen),
                       QApplication::activeWindow());
    if (liste.exec() == QDialog::Accepted && liste.gewaehlt() >= 0)
        m_auswahl = werte[size_t(liste.gewaehlt())];
}

void zelAbrPosStamm::pflegen(const QVariant &aufrufInfo, const Stamm &stamm)
{
    m_auswahl = QVariant();
    int jahr = 0;
    auto db = datenbank(aufrufInfo, jahr);
    if (!db)
        return;
    Stammpflege pflege(stamm, db, jahr, QApplication::activeWindow());
    pflege.exec();
}

} // namespace siblings
