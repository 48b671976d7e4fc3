#include "frame/Hilfefenster.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStyle>
#include <QTextBlock>
#include <QToolButton>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

namespace frame {

namespace {

constexpr int RolleAnker = Qt::UserRole;
constexpr int RollePosition = Qt::UserRole + 1;

// The section of the help that explains the help window itself.
const QString AnkerHilfefenster = QStringLiteral("frmHilfe");

QPointer<Hilfefenster> &instanz()
{
    static QPointer<Hilfefenster> f;
    return f;
}

QToolButton *knopf(QWidget *eltern, const char *name, const QString &text,
                   QStyle::StandardPixmap bild, const QString &tipp)
{
    auto *k = new QToolButton(eltern);
    k->setObjectName(QLatin1String(name));
    k->setText(text);
    k->setIcon(eltern->style()->standardIcon(bild));
    k->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    k->setToolTip(tipp);
    k->setAutoRaise(true);
    return k;
}

} // namespace

// ---------------------------------------------------------------------------------------------

void Hilfeanzeige::setDokument(std::shared_ptr<const Hilfedokument> dokument)
{
    m_dokument = std::move(dokument);
}

QVariant Hilfeanzeige::loadResource(int type, const QUrl &name)
{
    if (m_dokument && name.isLocalFile()
        && QFileInfo(name.toLocalFile()).absoluteFilePath() == m_dokument->datei())
        return m_dokument->text();
    return QTextBrowser::loadResource(type, name);
}

// ---------------------------------------------------------------------------------------------

Hilfefenster *Hilfefenster::oeffnen(std::shared_ptr<const Hilfedokument> dokument,
                                    const QString &anker, QWidget *besitzer)
{
    auto &f = instanz();
    if (!f)
        f = new Hilfefenster(besitzer);
    else
        f->setBesitzer(besitzer);
    f->zeigen(std::move(dokument), anker);
    f->show();
    f->raise();
    f->activateWindow();
    return f;
}

Hilfefenster *Hilfefenster::offenes()
{
    return instanz();
}

Hilfefenster::Hilfefenster(QWidget *besitzer)
    : QWidget(nullptr, Qt::Window)
{
    setObjectName(QStringLiteral("frmHilfe"));
    setWindowTitle(QStringLiteral("Hilfe"));

    m_zurueck = knopf(this, "cmdZurueck", QStringLiteral("Zurück"), QStyle::SP_ArrowBack,
                      QStringLiteral("Zur vorher gezeigten Stelle (Alt+Links)"));
    m_vor = knopf(this, "cmdVor", QStringLiteral("Vor"), QStyle::SP_ArrowForward,
                  QStringLiteral("Wieder vor (Alt+Rechts)"));
    auto *anfang = knopf(this, "cmdAnfang", QStringLiteral("Anfang"), QStyle::SP_DirHomeIcon,
                         QStringLiteral("Zum Anfang der Hilfe (Alt+Pos1)"));
    m_suche = new QLineEdit(this);
    m_suche->setObjectName(QStringLiteral("txtSuche"));
    m_suche->setPlaceholderText(QStringLiteral("Im Text suchen (Strg+F)"));
    m_suche->setClearButtonEnabled(true);
    auto *voriger = knopf(this, "cmdVorigerTreffer", QString(), QStyle::SP_ArrowUp,
                          QStringLiteral("Voriger Treffer (Umschalt+F3)"));
    auto *naechster = knopf(this, "cmdNaechsterTreffer", QString(), QStyle::SP_ArrowDown,
                            QStringLiteral("Nächster Treffer (Eingabetaste, F3)"));
    voriger->setToolButtonStyle(Qt::ToolButtonIconOnly);
    naechster->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_trefferText = new QLabel(this);
    m_trefferText->setObjectName(QStringLiteral("lblTreffer"));
    m_trefferText->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("000 Treffer")));

    m_inhalt = new QTreeWidget(this);
    m_inhalt->setObjectName(QStringLiteral("trvInhalt"));
    m_inhalt->setHeaderHidden(true);
    m_inhalt->setAccessibleName(QStringLiteral("Inhalt"));
    m_anzeige = new Hilfeanzeige(this);
    m_anzeige->setObjectName(QStringLiteral("txtHilfe"));
    m_anzeige->setOpenExternalLinks(true);
    m_anzeige->setAccessibleName(QStringLiteral("Hilfetext"));

    auto *leiste = new QHBoxLayout;
    leiste->addWidget(m_zurueck);
    leiste->addWidget(m_vor);
    leiste->addWidget(anfang);
    leiste->addSpacing(16);
    leiste->addWidget(m_suche, 1);
    leiste->addWidget(voriger);
    leiste->addWidget(naechster);
    leiste->addWidget(m_trefferText);
    auto *teiler = new QSplitter(this);
    teiler->addWidget(m_inhalt);
    teiler->addWidget(m_anzeige);
    teiler->setStretchFactor(1, 1);
    teiler->setSizes({270, 630});
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(leiste);
    layout->addWidget(teiler, 1);
    resize(900, 640);

    connect(m_zurueck, &QToolButton::clicked, m_anzeige, &QTextBrowser::backward);
    connect(m_vor, &QToolButton::clicked, m_anzeige, &QTextBrowser::forward);
    connect(anfang, &QToolButton::clicked, this, [this] {
        if (m_dokument)
            zeigen(m_dokument, {});
    });
    connect(m_anzeige, &QTextBrowser::backwardAvailable, m_zurueck, &QWidget::setEnabled);
    connect(m_anzeige, &QTextBrowser::forwardAvailable, m_vor, &QWidget::setEnabled);
    connect(m_anzeige, &QTextBrowser::sourceChanged, this, &Hilfefenster::quelleGeaendert);
    connect(m_inhalt, &QTreeWidget::itemActivated, this, &Hilfefenster::inhaltGewaehlt);
    connect(m_inhalt, &QTreeWidget::itemClicked, this, &Hilfefenster::inhaltGewaehlt);
    connect(m_suche, &QLineEdit::textChanged, this, &Hilfefenster::suchtextGeaendert);
    connect(m_suche, &QLineEdit::returnPressed, this, [this] { weiterSuchen(); });
    connect(naechster, &QToolButton::clicked, this, [this] { weiterSuchen(); });
    connect(voriger, &QToolButton::clicked, this, [this] { weiterSuchen(true); });

    const auto taste = [this](const QKeySequence &k, auto wirkung) {
        connect(new QShortcut(k, this), &QShortcut::activated, this, wirkung);
    };
    taste(QKeySequence::Find, [this] {
        m_suche->setFocus(Qt::ShortcutFocusReason);
        m_suche->selectAll();
    });
    taste(QKeySequence(Qt::Key_F3), [this] { weiterSuchen(); });
    taste(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { weiterSuchen(true); });
    taste(QKeySequence(Qt::ALT | Qt::Key_Left), [this] { m_anzeige->backward(); });
    taste(QKeySequence(Qt::ALT | Qt::Key_Right), [this] { m_anzeige->forward(); });
    taste(QKeySequence(Qt::ALT | Qt::Key_Home), [anfang] { anfang->click(); });
    taste(QKeySequence(Qt::Key_F1), [this] {
        if (m_dokument && m_dokument->hatAnker(AnkerHilfefenster))
            zeigen(m_dokument, AnkerHilfefenster);
    });
    taste(QKeySequence(Qt::Key_Escape), [this] {
        if (m_suche->hasFocus() && !m_suche->text().isEmpty())
            m_suche->clear();
        else
            close();
    });

    knoepfeAktualisieren();
    setBesitzer(besitzer);
}

Hilfefenster::~Hilfefenster() = default;

void Hilfefenster::setBesitzer(QWidget *besitzer)
{
    if (besitzer)
        besitzer = besitzer->window();
    if (besitzer == this)
        return;
    if (m_besitzer == besitzer && parentWidget() == besitzer)
        return;
    if (m_besitzer)
        m_besitzer->removeEventFilter(this);
    m_besitzer = besitzer;
    const bool sichtbar = isVisible();
    const QRect ort = geometry();
    setParent(besitzer, Qt::Window);
    setGeometry(ort);
    if (besitzer)
        besitzer->installEventFilter(this);
    if (sichtbar)
        show();
}

bool Hilfefenster::eventFilter(QObject *obj, QEvent *ev)
{
    // The owner closes (not: is minimised): the help moves on to the owner's parent window, or
    // closes with the last screen.
    if (obj == m_besitzer && ev->type() == QEvent::Hide && !ev->spontaneous()) {
        QWidget *eltern = m_besitzer->parentWidget();
        if (eltern) {
            setBesitzer(eltern);
        } else {
            m_besitzer->removeEventFilter(this);
            m_besitzer = nullptr;
            hide();
            setParent(nullptr);
            deleteLater();
        }
    }
    return QWidget::eventFilter(obj, ev);
}

void Hilfefenster::zeigen(std::shared_ptr<const Hilfedokument> dokument, const QString &anker)
{
    if (!dokument)
        return;
    const bool neu = dokument != m_dokument;
    m_dokument = std::move(dokument);
    setWindowTitle(QStringLiteral("Hilfe – %1").arg(m_dokument->titel()));
    QUrl url = QUrl::fromLocalFile(m_dokument->datei());
    if (neu) {
        m_anzeige->setDokument(m_dokument);
        // An empty source first, so that a changed file is read again under its old name.
        m_anzeige->setSource(QUrl());
        m_anzeige->setSource(url, m_dokument->art());
        m_anzeige->clearHistory();
        inhaltAufbauen();
    }
    if (m_dokument->hatAnker(anker))
        url.setFragment(anker);
    m_anzeige->setSource(url, m_dokument->art());
    if (url.fragment().isEmpty())
        m_anzeige->verticalScrollBar()->setValue(0);
    quelleGeaendert(m_anzeige->source());
}

QString Hilfefenster::anker() const
{
    return m_anzeige->source().fragment();
}

QString Hilfefenster::abschnitt() const
{
    const QTreeWidgetItem *e = m_inhalt->currentItem();
    return e ? e->text(0) : QString();
}

void Hilfefenster::inhaltAufbauen()
{
    const QSignalBlocker still(m_inhalt);
    m_inhalt->clear();
    QList<std::pair<int, QTreeWidgetItem *>> stapel;
    for (const Hilfeabschnitt &a : m_dokument->inhalt()) {
        while (!stapel.isEmpty() && stapel.last().first >= a.ebene)
            stapel.removeLast();
        auto *e = stapel.isEmpty() ? new QTreeWidgetItem(m_inhalt)
                                   : new QTreeWidgetItem(stapel.last().second);
        e->setText(0, a.titel);
        e->setToolTip(0, a.titel);
        e->setData(0, RolleAnker, a.anker);
        e->setData(0, RollePosition, a.position);
        stapel.append({a.ebene, e});
    }
    m_inhalt->expandToDepth(0);
}

void Hilfefenster::inhaltGewaehlt(QTreeWidgetItem *eintrag)
{
    if (!eintrag || !m_dokument)
        return;
    const QString anker = eintrag->data(0, RolleAnker).toString();
    if (anker.isEmpty()) {
        zurPosition(eintrag->data(0, RollePosition).toInt());
        return;
    }
    QUrl url = QUrl::fromLocalFile(m_dokument->datei());
    url.setFragment(anker);
    m_anzeige->setSource(url, m_dokument->art());
}

void Hilfefenster::zurPosition(int position)
{
    const QTextBlock block = m_anzeige->document()->findBlock(position);
    if (!block.isValid())
        return;
    const QRectF r = m_anzeige->document()->documentLayout()->blockBoundingRect(block);
    m_anzeige->verticalScrollBar()->setValue(int(r.top()));
}

void Hilfefenster::quelleGeaendert(const QUrl &url)
{
    knoepfeAktualisieren();
    if (m_dokument)
        abschnittMarkieren(m_dokument->ankerPosition(url.fragment()));
}

void Hilfefenster::abschnittMarkieren(int position)
{
    // The section that holds the position: the last heading at or before it.
    const QSignalBlocker still(m_inhalt);
    QTreeWidgetItem *abschnitt = nullptr;
    for (QTreeWidgetItemIterator it(m_inhalt); *it && position >= 0; ++it) {
        if ((*it)->data(0, RollePosition).toInt() > position)
            break;
        abschnitt = *it;
    }
    m_inhalt->setCurrentItem(abschnitt);
    if (abschnitt)
        m_inhalt->scrollToItem(abschnitt);
}

void Hilfefenster::knoepfeAktualisieren()
{
    m_zurueck->setEnabled(m_anzeige->isBackwardAvailable());
    m_vor->setEnabled(m_anzeige->isForwardAvailable());
}

void Hilfefenster::suchtextGeaendert(const QString &text)
{
    QList<QTextEdit::ExtraSelection> marken;
    m_treffer = 0;
    if (!text.isEmpty()) {
        QTextCharFormat markiert;
        markiert.setBackground(QColor(255, 226, 110));
        for (QTextCursor c = m_anzeige->document()->find(text); !c.isNull();
             c = m_anzeige->document()->find(text, c)) {
            marken.append({c, markiert});
            ++m_treffer;
        }
    }
    m_anzeige->setExtraSelections(marken);
    if (text.isEmpty())
        m_trefferText->clear();
    else if (m_treffer == 0)
        m_trefferText->setText(QStringLiteral("Kein Treffer"));
    else
        m_trefferText->setText(QStringLiteral("%1 Treffer").arg(m_treffer));
    if (m_treffer == 0)
        return;
    // Typing on: the first match from where the last one began, or from the top of what the
    // reader sees when that match is out of sight.
    QTextCursor c = m_anzeige->textCursor();
    if (!c.hasSelection() || !m_anzeige->viewport()->rect().intersects(m_anzeige->cursorRect(c)))
        c = m_anzeige->cursorForPosition(QPoint(0, 0));
    c.setPosition(c.selectionStart());
    m_anzeige->setTextCursor(c);
    weiterSuchen();
}

bool Hilfefenster::weiterSuchen(bool rueckwaerts)
{
    const QString text = m_suche->text();
    if (text.isEmpty())
        return false;
    const QTextDocument::FindFlags art
        = rueckwaerts ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    bool gefunden = m_anzeige->find(text, art);
    if (!gefunden) {
        QTextCursor c = m_anzeige->textCursor();
        c.movePosition(rueckwaerts ? QTextCursor::End : QTextCursor::Start);
        m_anzeige->setTextCursor(c);
        gefunden = m_anzeige->find(text, art);
    }
    // The table of contents follows to the section of the match.
    if (gefunden)
        abschnittMarkieren(m_anzeige->textCursor().selectionStart());
    return gefunden;
}

} // namespace frame
