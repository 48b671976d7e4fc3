#include "MsgBox.h"

#include "platform/core/Geheimnisse.h"
#include "Sprache.h"
#include "platform/core/RuntimeError.h"
#include "platform/core/VbWerte.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>

namespace platform {

namespace {

MsgBoxProtokoll *g_protokoll = nullptr;

constexpr int ButtonMaske = 0x0F;
constexpr int IconMaske = 0x70;
constexpr int DefaultMaske = 0x300;

QMessageBox::StandardButton knopfFuer(int antwort)
{
    switch (antwort) {
    case vbOK:
        return QMessageBox::Ok;
    case vbCancel:
        return QMessageBox::Cancel;
    case vbAbort:
        return QMessageBox::Abort;
    case vbRetry:
        return QMessageBox::Retry;
    case vbIgnore:
        return QMessageBox::Ignore;
    case vbYes:
        return QMessageBox::Yes;
    case vbNo:
        return QMessageBox::No;
    }
    return QMessageBox::NoButton;
}

QMessageBox::Icon iconFuer(int buttons)
{
    switch (buttons & IconMaske) {
    case vbCritical:
        return QMessageBox::Critical;
    case vbQuestion:
        return QMessageBox::Question;
    case vbExclamation:
        return QMessageBox::Warning;
    case vbInformation:
        return QMessageBox::Information;
    }
    return QMessageBox::NoIcon;
}

int standardAntwort(int buttons)
{
    const QList<int> antworten = MsgBoxAntworten(buttons);
    const int index = (buttons & DefaultMaske) >> 8;
    return antworten.value(index < antworten.size() ? index : 0);
}

// Escape and the close button give Cancel where the box has one, OK on a box with OK only;
// otherwise (Yes/No, Abort/Retry/Ignore) the original ignores them and so does this box.
int escapeAntwort(int buttons)
{
    const QList<int> antworten = MsgBoxAntworten(buttons);
    if (antworten.contains(vbCancel))
        return vbCancel;
    if (antworten == QList<int> {vbOK})
        return vbOK;
    return 0;
}

// Qt would make "Nein" (or "Abbrechen" of Abort/Retry/Ignore) the way out of a box without
// Cancel; there Escape and the window's close button do nothing, as in the original, so that
// Escape never takes the path of an answer the user did not give.
class Box : public QMessageBox
{
public:
    Box(Icon icon, const QString &titel, const QString &text, bool ohneAusweg)
        : QMessageBox(icon, titel, text)
        , m_ohneAusweg(ohneAusweg)
    { }

protected:
    void keyPressEvent(QKeyEvent *ev) override
    {
        if (m_ohneAusweg && ev->matches(QKeySequence::Cancel)) {
            ev->accept();
            return;
        }
        QMessageBox::keyPressEvent(ev);
    }
    void closeEvent(QCloseEvent *ev) override
    {
        if (!m_ohneAusweg) {
            QMessageBox::closeEvent(ev);
        } else if (ev->spontaneous()) {
            ev->ignore();
        } else {
            // Closed by the program (the application is ending): no button was clicked, and
            // zeigen() answers with the default.
            QDialog::closeEvent(ev);
        }
    }

private:
    bool m_ohneAusweg;
};

int zeigen(const QString &text, int buttons, const QString &titel)
{
    deutscheStandardtexte();
    const int esc = escapeAntwort(buttons);
    Box box(iconFuer(buttons), titel, QString(text).replace(QLatin1String("\r\n"), "\n"),
            esc == 0);
    box.setTextFormat(Qt::PlainText);
    const QList<int> antworten = MsgBoxAntworten(buttons);
    QList<QPushButton *> knoepfe;
    for (int antwort : antworten)
        knoepfe.append(box.addButton(knopfFuer(antwort)));
    const int index = (buttons & DefaultMaske) >> 8;
    box.setDefaultButton((knoepfe.value(index < knoepfe.size() ? index : 0)));
    if (esc)
        box.setEscapeButton(knoepfe.at(antworten.indexOf(esc)));
    box.exec();
    const int i = knoepfe.indexOf(box.clickedButton());
    if (i >= 0)
        return antworten.at(i);
    // Closed without a button (the application is quitting): the way out or the default.
    return esc ? esc : standardAntwort(buttons);
}

} // namespace

QString anwendungsTitel()
{
    return QStringLiteral("zepKontenStamm");
}

QList<int> MsgBoxAntworten(int buttons)
{
    switch (buttons & ButtonMaske) {
    case vbOKOnly:
        return {vbOK};
    case vbOKCancel:
        return {vbOK, vbCancel};
    case vbAbortRetryIgnore:
        return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel:
        return {vbYes, vbNo, vbCancel};
    case vbYesNo:
        return {vbYes, vbNo};
    case vbRetryCancel:
        return {vbRetry, vbCancel};
    }
    return {};
}

int MsgBox(const QString &text, int buttons, const QString &title)
{
    if (MsgBoxAntworten(buttons).isEmpty() || buttons < 0)
        throw RuntimeError(5, QStringLiteral("Ungültiger Prozeduraufruf oder ungültiges Argument"));
    // No box ever shows a password, whatever text an engine or a caller put together.
    const QString sicher = geheimnisseMaskieren(text);
    const QString titel = title.isEmpty() ? anwendungsTitel() : geheimnisseMaskieren(title);
    if (g_protokoll)
        return g_protokoll->beantworten({sicher, buttons, titel, 0});
    return zeigen(sicher, buttons, titel);
}

void Hinweis(const QString &text, const QString &title)
{
    const QString sicher = geheimnisseMaskieren(text);
    const QString titel = title.isEmpty() ? anwendungsTitel() : geheimnisseMaskieren(title);
    if (g_protokoll) {
        g_protokoll->vermerken({sicher, vbOKOnly | vbInformation, titel, vbOK, true});
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Information, titel,
                                QString(sicher).replace(QLatin1String("\r\n"), "\n"),
                                QMessageBox::Ok, QApplication::activeWindow());
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::NonModal);
    box->show();
}

int MsgBox(const QString &text, const QVariant &buttons, const QString &title)
{
    return MsgBox(text, int(vb::CLng(buttons)), title);
}

MsgBoxProtokoll::MsgBoxProtokoll()
    : m_vorher(g_protokoll)
{
    g_protokoll = this;
}

MsgBoxProtokoll::~MsgBoxProtokoll()
{
    g_protokoll = m_vorher;
}

void MsgBoxProtokoll::antworte(std::initializer_list<int> antworten)
{
    for (int a : antworten)
        m_antworten.push_back(a);
}

void MsgBoxProtokoll::setAntwortFunktion(std::function<int(const MsgBoxEintrag &)> f)
{
    m_funktion = std::move(f);
}

QStringList MsgBoxProtokoll::texte() const
{
    QStringList t;
    for (const auto &e : m_eintraege)
        t.append(e.text);
    return t;
}

void MsgBoxProtokoll::leeren()
{
    m_eintraege.clear();
    m_warnungen.clear();
    m_antworten.clear();
}

int MsgBoxProtokoll::beantworten(MsgBoxEintrag eintrag)
{
    int antwort = 0;
    bool geskriptet = true;
    if (!m_antworten.empty()) {
        antwort = m_antworten.front();
        m_antworten.pop_front();
    } else if (m_funktion) {
        antwort = m_funktion(eintrag);
    } else {
        geskriptet = false;
    }
    QString warnung;
    if (!geskriptet)
        warnung = QStringLiteral("Keine Antwort vorgesehen für: ");
    else if (!MsgBoxAntworten(eintrag.buttons).contains(antwort))
        warnung = QStringLiteral("Antwort %1 passt zu keinem Knopf von: ").arg(antwort);
    if (!warnung.isEmpty()) {
        warnung += eintrag.text;
        m_warnungen.append(warnung);
        qWarning("MsgBoxProtokoll: %s", qUtf8Printable(warnung));
        antwort = standardAntwort(eintrag.buttons);
    }
    eintrag.antwort = antwort;
    m_eintraege.append(eintrag);
    return antwort;
}

} // namespace platform
