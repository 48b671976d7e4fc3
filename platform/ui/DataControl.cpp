#include "DataControl.h"

#include "MsgBox.h"
#include "platform/core/RuntimeError.h"
#include "platform/storage/Schema.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMetaProperty>
#include <QToolButton>
#include <optional>

namespace platform {

using storage::EditMode;

namespace {

// Restores a flag when the scope ends, also when a handler throws.
class FlagSetzen
{
public:
    explicit FlagSetzen(bool &flag)
        : m_flag(flag)
        , m_vorher(flag)
    {
        m_flag = true;
    }
    ~FlagSetzen() { m_flag = m_vorher; }

private:
    bool &m_flag;
    bool m_vorher;
};

bool nurAnzeige(const QWidget *w)
{
    return qobject_cast<const QLabel *>(w) != nullptr;
}

bindung::Art spaltenArt(const storage::Recordset &rs, const QString &feld)
{
    using storage::Spaltentyp;
    if (const auto *t = storage::tabelle(rs.tabelle())) {
        if (const auto *s = t->spalte(feld)) {
            switch (s->typ) {
            case Spaltentyp::Text:
                return bindung::Art::Text;
            case Spaltentyp::Ganzzahl16:
            case Spaltentyp::Ganzzahl32:
            case Spaltentyp::JaNein:
                return bindung::Art::Ganzzahl;
            case Spaltentyp::Kommazahl:
                return bindung::Art::Kommazahl;
            case Spaltentyp::Datum:
                return bindung::Art::Datum;
            }
        }
    }
    // Tables outside the catalogue: the kind of the value the row holds now, or of the first
    // other row that holds one.
    QVariant v = rs.feld(feld);
    if (v.isNull()) {
        auto c = rs.Clone();
        if (c->RecordCount() > 0)
            c->MoveFirst();
        for (; c->RecordCount() > 0 && v.isNull() && !c->eof(); c->MoveNext())
            v = c->feld(feld);
        if (v.isNull())
            return bindung::Art::Unbekannt;
    }
    switch (v.metaType().id()) {
    case QMetaType::LongLong:
    case QMetaType::Int:
    case QMetaType::Short:
        return bindung::Art::Ganzzahl;
    case QMetaType::Double:
        return bindung::Art::Kommazahl;
    case QMetaType::QDate:
        return bindung::Art::Datum;
    default:
        return bindung::Art::Text;
    }
}

} // namespace

// ---------------------------------------------------------------------------------------------
// Widget values

namespace bindung {

QString anzeigeText(const QVariant &feldwert)
{
    if (feldwert.isNull() || !feldwert.isValid())
        return {};
    switch (feldwert.metaType().id()) {
    case QMetaType::QDate:
        return feldwert.toDate().toString(QStringLiteral("dd.MM.yyyy"));
    case QMetaType::Double:
        return QString::number(feldwert.toDouble(), 'g', 15).replace(u'.', u',');
    case QMetaType::Bool:
        return feldwert.toBool() ? QStringLiteral("-1") : QStringLiteral("0");
    default:
        return feldwert.toString();
    }
}

QVariant widgetWert(QWidget *w)
{
    if (auto *l = qobject_cast<QLabel *>(w))
        return l->text();
    if (auto *c = qobject_cast<QCheckBox *>(w))
        return c->isChecked();
    if (auto *c = qobject_cast<QComboBox *>(w))
        return c->currentIndex();
    if (auto *e = qobject_cast<QLineEdit *>(w))
        return e->text();
    const QMetaProperty p = w->metaObject()->userProperty();
    return p.isValid() ? p.read(w) : QVariant();
}

void widgetSetzen(QWidget *w, const QVariant &feldwert)
{
    if (auto *l = qobject_cast<QLabel *>(w)) {
        l->setText(anzeigeText(feldwert));
    } else if (auto *c = qobject_cast<QCheckBox *>(w)) {
        bool ok = false;
        const qlonglong n = feldwert.toLongLong(&ok);
        c->setChecked(ok && n != 0);
    } else if (auto *c = qobject_cast<QComboBox *>(w)) {
        bool ok = false;
        const int i = feldwert.toInt(&ok);
        c->setCurrentIndex(ok && i >= 0 && i < c->count() ? i : -1);
    } else if (auto *e = qobject_cast<QLineEdit *>(w)) {
        e->setText(anzeigeText(feldwert));
    } else {
        const QMetaProperty p = w->metaObject()->userProperty();
        if (!p.isValid())
            return;
        if (p.metaType().id() == QMetaType::QString)
            p.write(w, anzeigeText(feldwert));
        else
            p.write(w, feldwert.isNull() ? QVariant(p.metaType()) : feldwert);
    }
}

QVariant inFeldwert(const QVariant &wert, Art art)
{
    if (wert.metaType().id() == QMetaType::Bool) // check box
        return qlonglong(wert.toBool() ? -1 : 0);
    if (wert.metaType().id() == QMetaType::Int) // combo index
        return wert.toInt() < 0 ? QVariant() : QVariant(qlonglong(wert.toInt()));
    if (wert.metaType().id() != QMetaType::QString)
        return wert;

    const QString text = wert.toString();
    const QString t = text.trimmed();
    if (art == Art::Text)
        return text;
    if (t.isEmpty())
        return {};
    bool ok = false;
    switch (art) {
    case Art::Text:
    case Art::Unbekannt:
        return text;
    case Art::Ganzzahl: {
        const qlonglong n = t.toLongLong(&ok, 10);
        if (ok)
            return n;
        break;
    }
    case Art::Kommazahl: {
        const double d = t.contains(u',') ? QLocale(QLocale::German).toDouble(t, &ok)
                                          : QLocale::c().toDouble(t, &ok);
        if (ok)
            return d;
        break;
    }
    case Art::Datum: {
        for (const auto *form : {"dd.MM.yyyy", "d.M.yyyy"}) {
            const QDate d = QDate::fromString(t, QString::fromLatin1(form));
            if (d.isValid())
                return d;
        }
        const QDate d = QDate::fromString(t, Qt::ISODate);
        if (d.isValid())
            return d;
        break;
    }
    }
    RuntimeError::ausloesen(fehlernummer::Typenkonflikt);
}

} // namespace bindung

// ---------------------------------------------------------------------------------------------
// DataControlRecordset

storage::Recordset &DataControlRecordset::rs() const
{
    if (!m_dc.m_rs)
        RuntimeError::ausloesen(fehlernummer::ObjektvariableNichtFestgelegt);
    return *m_dc.m_rs;
}

int DataControlRecordset::RecordCount() const
{
    return rs().RecordCount();
}

bool DataControlRecordset::eof() const
{
    return rs().eof();
}

bool DataControlRecordset::bof() const
{
    return rs().bof();
}

int DataControlRecordset::AbsolutePosition() const
{
    return rs().AbsolutePosition();
}

bool DataControlRecordset::MoveFirst()
{
    if (rs().RecordCount() == 0)
        RuntimeError::ausloesen(fehlernummer::KeinAktuellerDatensatz);
    if (!m_dc.vorBewegung(vbDataActionMoveFirst))
        return false;
    rs().MoveFirst();
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::MoveLast()
{
    if (rs().RecordCount() == 0)
        RuntimeError::ausloesen(fehlernummer::KeinAktuellerDatensatz);
    if (!m_dc.vorBewegung(vbDataActionMoveLast))
        return false;
    rs().MoveLast();
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::MoveNext()
{
    if (rs().eof())
        RuntimeError::ausloesen(fehlernummer::KeinAktuellerDatensatz);
    if (!m_dc.vorBewegung(vbDataActionMoveNext))
        return false;
    rs().MoveNext();
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::MovePrevious()
{
    if (rs().bof())
        RuntimeError::ausloesen(fehlernummer::KeinAktuellerDatensatz);
    if (!m_dc.vorBewegung(vbDataActionMovePrevious))
        return false;
    rs().MovePrevious();
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::finden(const std::vector<storage::Kriterium> &kriterien, bool vomAnfang)
{
    // A search that finds nothing must not raise Validate, so look on a clone first.
    {
        auto probe = rs().Clone();
        if (!vomAnfang && m_dc.aktuelleZeile())
            probe->setBookmark(rs().bookmark());
        if (vomAnfang || !m_dc.aktuelleZeile())
            probe->FindFirst(kriterien);
        else
            probe->FindNext(kriterien);
        m_noMatch = probe->NoMatch();
    }
    if (m_noMatch || !m_dc.vorBewegung(vbDataActionFind))
        return false;
    // The save may have changed the row that matched; search again for real.
    if (vomAnfang || !m_dc.aktuelleZeile())
        rs().FindFirst(kriterien);
    else
        rs().FindNext(kriterien);
    m_noMatch = rs().NoMatch();
    if (m_noMatch)
        return false;
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::FindFirst(const std::vector<storage::Kriterium> &kriterien)
{
    return finden(kriterien, true);
}

bool DataControlRecordset::FindNext(const std::vector<storage::Kriterium> &kriterien)
{
    return finden(kriterien, false);
}

storage::Recordset::Bookmark DataControlRecordset::bookmark() const
{
    return rs().bookmark();
}

bool DataControlRecordset::setBookmark(storage::Recordset::Bookmark b)
{
    rs();
    if (!m_dc.vorBewegung(vbDataActionBookmark))
        return false;
    rs().setBookmark(b);
    m_dc.nachBewegung();
    return true;
}

bool DataControlRecordset::Requery()
{
    rs();
    if (!m_dc.vorBewegung(vbDataActionMoveFirst))
        return false;
    rs().Requery();
    m_dc.nachBewegung();
    return true;
}

std::unique_ptr<storage::Recordset> DataControlRecordset::Clone() const
{
    return rs().Clone();
}

void DataControlRecordset::AddNew()
{
    rs().AddNew();
}

void DataControlRecordset::Edit()
{
    rs().Edit();
}

void DataControlRecordset::Update()
{
    rs().Update();
}

void DataControlRecordset::CancelUpdate()
{
    rs().CancelUpdate();
}

storage::EditMode DataControlRecordset::editMode() const
{
    return rs().editMode();
}

void DataControlRecordset::Delete()
{
    rs().Delete();
    m_dc.bearbeitungVerwerfen();
}

QStringList DataControlRecordset::feldnamen() const
{
    return rs().feldnamen();
}

QVariant DataControlRecordset::feld(const QString &name) const
{
    return rs().feld(name);
}

void DataControlRecordset::setFeld(const QString &name, const QVariant &wert)
{
    rs().setFeld(name, wert);
}

// ---------------------------------------------------------------------------------------------
// DataControl

DataControl::DataControl(QWidget *parent)
    : QWidget(parent)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const auto knopf = [this, layout](const QString &text, const QString &name, int action) {
        auto *b = new QToolButton(this);
        b->setText(text);
        b->setAccessibleName(name);
        b->setToolTip(name);
        // The bar never takes the focus, so the fields' Validate does not run for it.
        b->setFocusPolicy(Qt::NoFocus);
        b->setAutoRaise(false);
        // Narrow arrows leave the width to the caption, as on the suite's data controls.
        b->setMaximumWidth(22);
        b->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
        connect(b, &QToolButton::clicked, this, [this, action] { navigieren(action); });
        layout->addWidget(b);
    };
    knopf(QStringLiteral("|<"), QStringLiteral("Erster Datensatz"), vbDataActionMoveFirst);
    knopf(QStringLiteral("<"), QStringLiteral("Vorheriger Datensatz"), vbDataActionMovePrevious);
    m_caption = new QLabel(this);
    m_caption->setAlignment(Qt::AlignCenter);
    m_caption->setFrameShape(QFrame::StyledPanel);
    m_caption->setWordWrap(true);
    m_caption->setMinimumWidth(0);
    layout->addWidget(m_caption, 1);
    knopf(QStringLiteral(">"), QStringLiteral("Nächster Datensatz"), vbDataActionMoveNext);
    knopf(QStringLiteral(">|"), QStringLiteral("Letzter Datensatz"), vbDataActionMoveLast);
    setFocusPolicy(Qt::NoFocus);
}

DataControl::~DataControl() = default;

void DataControl::setRecordSource(const QString &sql, const QVariantList &params)
{
    m_recordSource = sql;
    m_params = params;
}

QString DataControl::Caption() const
{
    return m_caption->text();
}

void DataControl::setCaption(const QString &caption)
{
    m_caption->setText(caption);
}

QString DataControl::passwort() const
{
    // Connect reads like "Access;pwd=geheim;".
    const qsizetype i = m_connect.indexOf(QLatin1String("pwd="), 0, Qt::CaseInsensitive);
    if (i < 0)
        return storage::DBPasswort;
    const qsizetype anfang = i + 4;
    const qsizetype ende = m_connect.indexOf(u';', anfang);
    return m_connect.mid(anfang, ende < 0 ? -1 : ende - anfang);
}

bool DataControl::aktuelleZeile() const
{
    if (!m_rs || m_rs->eof() || m_rs->bof())
        return false;
    try {
        (void)m_rs->bookmark(); // fails right after Delete
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

void DataControl::neuLaden()
{
    try {
        auto db = storage::Database::open(m_databaseName, passwort());
        m_rs = std::make_unique<storage::Recordset>(std::move(db), m_recordSource, m_params);
    } catch (const RuntimeError &) {
        m_rs.reset();
        widgetsFuellen();
        throw;
    }
}

bool DataControl::Refresh()
{
    if (m_rs && !vorBewegung(vbDataActionMoveFirst))
        return false;
    try {
        neuLaden();
    } catch (const RuntimeError &e) {
        fehlerAusloesen(e.nummer(), e.beschreibung());
        return false;
    }
    nachBewegung();
    return true;
}

bool DataControl::RefreshOderFehler()
{
    if (m_rs && !vorBewegung(vbDataActionMoveFirst))
        return false;
    neuLaden();
    nachBewegung();
    return true;
}

bool DataControl::UpdateRecord()
{
    if (!m_rs)
        return true;
    if (!vorBewegung(vbDataActionUpdate, true))
        return false;
    widgetsFuellen();
    return true;
}

void DataControl::UpdateControls()
{
    widgetsFuellen();
}

bool DataControl::schliessen()
{
    if (!m_rs)
        return true;
    return vorBewegung(vbDataActionUnload);
}

bool DataControl::bearbeitet() const
{
    for (const auto &b : m_bindungen) {
        if (b.widget && !nurAnzeige(b.widget) && bindung::widgetWert(b.widget) != b.gezeigt)
            return true;
    }
    return false;
}

bool DataControl::vorBewegung(int action, bool speichernErzwingen)
{
    if (m_inValidate)
        return true;
    bool save = false;
    if (m_rs) {
        const bool zeile = aktuelleZeile();
        save = m_rs->editMode() != EditMode::Keiner
            || (zeile && (speichernErzwingen || bearbeitet()));
    }
    int act = action;
    {
        FlagSetzen validate(m_inValidate);
        emit Validate(act, save);
    }
    if (act == vbDataActionCancel)
        return false;
    return save ? speichern() : true;
}

bool DataControl::speichern()
{
    if (!m_rs)
        return true;
    storage::Recordset &rs = *m_rs;
    if (rs.editMode() == EditMode::Keiner && !aktuelleZeile())
        return true; // nothing to write to

    std::vector<std::pair<QString, QVariant>> werte;
    std::vector<Bindung *> geschrieben;
    bool selbstBegonnen = false;
    try {
        for (auto &b : m_bindungen) {
            if (!b.widget || nurAnzeige(b.widget))
                continue;
            const QVariant jetzt = bindung::widgetWert(b.widget);
            if (jetzt == b.gezeigt)
                continue;
            werte.emplace_back(b.feld, bindung::inFeldwert(jetzt, spaltenArt(rs, b.feld)));
            geschrieben.push_back(&b);
        }
        if (rs.editMode() == EditMode::Keiner) {
            rs.Edit();
            selbstBegonnen = true;
        }
        for (const auto &[feld, wert] : werte)
            rs.setFeld(feld, wert);
        rs.Update();
    } catch (const RuntimeError &e) {
        // Another user changed or deleted the row since it was read: what is stored now.
        std::optional<QVariantList> gespeichert;
        if (e.nummer() == fehlernummer::DatensatzGeaendert && selbstBegonnen) {
            try {
                gespeichert = rs.gespeicherteZeile();
            } catch (const RuntimeError &) { }
        }
        // The typed values stay in the widgets and still count as edits.
        if (selbstBegonnen && rs.editMode() != EditMode::Keiner) {
            try {
                rs.CancelUpdate();
            } catch (const RuntimeError &) { }
        }
        if (gespeichert) {
            konfliktMelden(*gespeichert, werte);
            return false;
        }
        fehlerAusloesen(e.nummer(), e.beschreibung());
        return false;
    }
    for (Bindung *b : geschrieben)
        b->gezeigt = bindung::widgetWert(b->widget);
    return true;
}

namespace {

QString konfliktWert(const QVariant &v)
{
    if (v.isNull())
        return QStringLiteral("(leer)");
    QString t = v.toString();
    while (t.endsWith(u' '))
        t.chop(1);
    return QStringLiteral("\u201E") + t + QStringLiteral("\u201C");
}

} // namespace

void DataControl::konfliktMelden(const QVariantList &gespeichert,
                                 const std::vector<std::pair<QString, QVariant>> &eingaben)
{
    storage::Recordset &rs = *m_rs;
    const QString titel = QStringLiteral("Gleichzeitige Änderung");
    if (gespeichert.isEmpty()) {
        const int antwort = MsgBox(
            QStringLiteral("Der Datensatz wurde inzwischen von einem anderen Benutzer gelöscht. "
                           "Ihre Eingaben wurden nicht gespeichert und stehen noch am "
                           "Bildschirm.\r\n\r\n"
                           "Ja ... Eingaben verwerfen und den Datenbestand neu laden\r\n"
                           "Nein ... Eingaben am Bildschirm lassen"),
            vbYesNo | vbExclamation, titel);
        if (antwort == vbYes) {
            bearbeitungVerwerfen();
            rs.Requery();
            nachBewegung();
        }
        return;
    }
    // The fields whose stored values differ from what this user read, with what they typed.
    const QStringList namen = rs.feldnamen();
    QStringList zeilen;
    for (int i = 0; i < namen.size() && i < gespeichert.size(); ++i) {
        const QVariant gelesen = rs.feld(i);
        if (konfliktWert(gelesen) == konfliktWert(gespeichert.at(i)))
            continue;
        QVariant eigen = gelesen;
        for (const auto &[feld, wert] : eingaben) {
            if (feld.compare(namen.at(i), Qt::CaseInsensitive) == 0)
                eigen = wert;
        }
        zeilen << QStringLiteral("  %1: gespeichert %2, bei Ihnen %3")
                      .arg(namen.at(i), konfliktWert(gespeichert.at(i)), konfliktWert(eigen));
    }
    const int antwort = MsgBox(
        QStringLiteral("Der Datensatz wurde inzwischen von einem anderen Benutzer geändert. Ihre "
                       "Änderungen wurden nicht gespeichert.\r\n\r\nAnders gespeichert:\r\n")
            + zeilen.join(QStringLiteral("\r\n"))
            + QStringLiteral("\r\n\r\nJa ... den gespeicherten Datensatz neu laden (Ihre Eingaben "
                             "werden verworfen)\r\nNein ... Ihre Eingaben bleiben am Bildschirm"),
        vbYesNo | vbExclamation, titel);
    if (antwort != vbYes)
        return;
    // Reload: the query again, then the same row by its key.
    const QStringList schluessel = rs.database()->primaryKey(rs.tabelle());
    std::vector<storage::Kriterium> kriterien;
    for (const QString &k : schluessel) {
        const int i = rs.feldIndex(k);
        if (i >= 0)
            kriterien.push_back({namen.at(i), gespeichert.at(i)});
    }
    bearbeitungVerwerfen();
    rs.Requery();
    if (!kriterien.empty() && rs.RecordCount() > 0)
        rs.FindFirst(kriterien);
    nachBewegung();
}

void DataControl::nachBewegung()
{
    widgetsFuellen();
    emit Reposition();
}

bool DataControl::bindungFuellen(Bindung &b, QString *fehler)
{
    QVariant wert;
    bool ok = true;
    if (aktuelleZeile() || (m_rs && m_rs->editMode() == EditMode::Neu)) {
        try {
            wert = m_rs->feld(b.feld);
        } catch (const RuntimeError &e) {
            if (fehler && fehler->isEmpty())
                *fehler = QString::number(e.nummer()) + u'\n' + e.beschreibung();
            ok = false;
        }
    }
    FlagSetzen fuellen(m_fuellt);
    bindung::widgetSetzen(b.widget, wert);
    b.gezeigt = bindung::widgetWert(b.widget);
    return ok;
}

void DataControl::widgetsFuellen()
{
    QString fehler;
    std::erase_if(m_bindungen, [](const Bindung &b) { return b.widget.isNull(); });
    // A text field takes no more characters than its column holds, on every engine alike.
    if (m_rs) {
        if (const auto *t = storage::tabelle(m_rs->tabelle())) {
            for (auto &b : m_bindungen) {
                auto *zeile = qobject_cast<QLineEdit *>(b.widget.data());
                const auto *s = zeile ? t->spalte(b.feld) : nullptr;
                if (s && s->typ == storage::Spaltentyp::Text && s->laenge > 0
                    && zeile->maxLength() > s->laenge)
                    zeile->setMaxLength(s->laenge);
            }
        }
    }
    for (auto &b : m_bindungen)
        bindungFuellen(b, &fehler);
    if (!fehler.isEmpty()) {
        const qsizetype i = fehler.indexOf(u'\n');
        fehlerAusloesen(fehler.left(i).toInt(), fehler.mid(i + 1));
    }
}

void DataControl::bearbeitungVerwerfen()
{
    for (auto &b : m_bindungen) {
        if (b.widget)
            b.gezeigt = bindung::widgetWert(b.widget);
    }
}

void DataControl::bind(QWidget *w, const QString &feld)
{
    if (!w)
        return;
    for (auto &b : m_bindungen) {
        if (b.widget == w) {
            b.feld = feld;
            bindungFuellen(b, nullptr);
            return;
        }
    }
    m_bindungen.push_back({w, feld, {}});
    bindungFuellen(m_bindungen.back(), nullptr);
}

void DataControl::unbind(QWidget *w)
{
    std::erase_if(m_bindungen, [w](const Bindung &b) { return b.widget == w; });
}

void DataControl::fehlerAusloesen(int nummer, const QString &beschreibung)
{
    int response = 1;
    emit Error(nummer, response);
    if (response != 0)
        standardMeldung(nummer, beschreibung);
}

void DataControl::standardMeldung(int nummer, const QString &beschreibung)
{
    QString text = beschreibung;
    if (text.isEmpty())
        text = RuntimeError::standardText(nummer);
    if (text.isEmpty())
        text = QStringLiteral("Fehler ") + QString::number(nummer);
    // A lost connection is no lost edit: say what to do.
    if (nummer == fehlernummer::DatenbankNichtErreichbar) {
        text += QStringLiteral("\r\n\r\nIhre Eingaben wurden nicht gespeichert und bleiben am "
                               "Bildschirm. Bitte wiederholen Sie den Vorgang, sobald die "
                               "Datenbank wieder erreichbar ist.");
    }
    MsgBox(text, vbOKOnly | vbExclamation);
}

void DataControl::navigieren(int action)
{
    if (!m_rs)
        return;
    try {
        const int anzahl = m_rs->RecordCount();
        const int pos = m_rs->AbsolutePosition();
        if (anzahl == 0)
            return;
        // The bar stops at the ends instead of running past them.
        switch (action) {
        case vbDataActionMoveFirst:
            m_zugang.MoveFirst();
            break;
        case vbDataActionMovePrevious:
            if (pos > 0)
                m_zugang.MovePrevious();
            break;
        case vbDataActionMoveNext:
            if (pos < anzahl - 1)
                m_zugang.MoveNext();
            break;
        case vbDataActionMoveLast:
            m_zugang.MoveLast();
            break;
        default:
            break;
        }
    } catch (const RuntimeError &e) {
        fehlerAusloesen(e.nummer(), e.beschreibung());
    }
}

} // namespace platform
