#include "frame/Hilfedokument.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QTextBlock>

namespace frame {

namespace {

// Larger files are no help text anyone wrote by hand.
constexpr qint64 HoechstGroesse = 32 * 1024 * 1024;

QString dekodieren(const QByteArray &daten, bool html)
{
    if (html) {
        QStringDecoder d = QStringDecoder::decoderForHtml(daten);
        if (d.isValid()) {
            const QString text = d.decode(daten);
            if (!d.hasError())
                return text;
        }
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(daten);
    return utf8.hasError() ? QString::fromLatin1(daten) : text;
}

QTextDocument::ResourceType artNachEndung(const QString &datei, const QString &text)
{
    const QString endung = QFileInfo(datei).suffix().toLower();
    if (endung == u"md" || endung == u"markdown")
        return QTextDocument::MarkdownResource;
    if (endung == u"htm" || endung == u"html" || endung == u"xhtml" || Qt::mightBeRichText(text))
        return QTextDocument::HtmlResource;
    return QTextDocument::UnknownResource; // plain text
}

std::shared_ptr<const Hilfedokument> &zuletzt()
{
    static std::shared_ptr<const Hilfedokument> d;
    return d;
}

} // namespace

std::shared_ptr<const Hilfedokument> Hilfedokument::laden(const QString &datei, QString *fehler)
{
    const QFileInfo info(datei);
    const QString pfad = info.absoluteFilePath();
    auto &cache = zuletzt();
    if (cache && cache->m_datei == pfad && cache->m_stand == info.lastModified()
        && cache->m_groesse == info.size())
        return cache;

    const auto scheitern = [&](const QString &text) {
        if (fehler)
            *fehler = text;
        return nullptr;
    };
    QFile f(pfad);
    if (!info.isFile() || !f.open(QIODevice::ReadOnly))
        return scheitern(QStringLiteral("Die Hilfedatei %1 lässt sich nicht lesen.").arg(datei));
    if (f.size() > HoechstGroesse)
        return scheitern(
            QStringLiteral("Die Hilfedatei %1 ist zu groß für die Anzeige.").arg(datei));
    const QByteArray daten = f.readAll();
    if (daten.left(4096).contains('\0')) {
        return scheitern(QStringLiteral("Die Hilfedatei %1 ist keine HTML- oder Textdatei und "
                                        "kann nicht angezeigt werden.")
                             .arg(datei));
    }

    auto d = std::make_shared<Hilfedokument>();
    d->m_datei = pfad;
    d->m_stand = info.lastModified();
    d->m_groesse = info.size();
    const bool html = QStringList {QStringLiteral("htm"), QStringLiteral("html")}.contains(
        info.suffix().toLower());
    d->m_text
        = dekodieren(daten, html || Qt::mightBeRichText(QString::fromLatin1(daten.left(512))));
    d->m_art = artNachEndung(pfad, d->m_text);
    if (d->m_art == QTextDocument::UnknownResource) {
        d->m_text = Qt::convertFromPlainText(d->m_text, Qt::WhiteSpaceNormal);
        d->m_art = QTextDocument::HtmlResource;
    }

    QTextDocument dok;
    if (d->m_art == QTextDocument::MarkdownResource)
        dok.setMarkdown(d->m_text);
    else
        dok.setHtml(d->m_text);
    for (QTextBlock b = dok.begin(); b.isValid(); b = b.next()) {
        QStringList namen;
        for (auto it = b.begin(); !it.atEnd(); ++it)
            namen += it.fragment().charFormat().anchorNames();
        for (const QString &n : std::as_const(namen)) {
            d->m_anker.insert(n);
            if (!d->m_ankerPosition.contains(n))
                d->m_ankerPosition.insert(n, b.position());
        }
        const int ebene = b.blockFormat().headingLevel();
        const QString titel = b.text().simplified();
        if (ebene > 0 && !titel.isEmpty())
            d->m_inhalt.append({titel, namen.value(0), ebene, b.position()});
    }
    d->m_titel = dok.metaInformation(QTextDocument::DocumentTitle).simplified();
    if (d->m_titel.isEmpty())
        d->m_titel = d->m_inhalt.isEmpty() ? info.fileName() : d->m_inhalt.first().titel;
    cache = d;
    return d;
}

} // namespace frame
