#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QTextDocument>
#include <memory>

// A help file read for display: its text as HTML or Markdown, the anchors it offers and its
// table of contents (the headings). HTML files may declare their encoding; without one UTF-8 is
// taken, and Latin-1 when the bytes are no UTF-8. A plain text file is shown as paragraphs.
namespace frame {

struct Hilfeabschnitt
{
    QString titel;
    // The heading's first anchor ("" when it has none: then `position` finds it).
    QString anker;
    int ebene = 1;
    int position = 0;
};

class Hilfedokument
{
public:
    // The file `datei`, read anew only when its time or size changed since the last call. Null with
    // a German message in `fehler` when it cannot be read or holds no text (a compiled help file of
    // another system).
    static std::shared_ptr<const Hilfedokument> laden(const QString &datei,
                                                      QString *fehler = nullptr);

    const QString &datei() const { return m_datei; }
    const QString &text() const { return m_text; }
    QTextDocument::ResourceType art() const { return m_art; }
    // The document's title (HTML <title>), else the first heading, else the file name.
    const QString &titel() const { return m_titel; }
    const QList<Hilfeabschnitt> &inhalt() const { return m_inhalt; }
    bool hatAnker(const QString &name) const { return !name.isEmpty() && m_anker.contains(name); }
    // Where the anchor stands in the document (-1: no such anchor).
    int ankerPosition(const QString &anker) const { return m_ankerPosition.value(anker, -1); }

private:
    QString m_datei;
    QDateTime m_stand;
    qint64 m_groesse = 0;
    QString m_text;
    QTextDocument::ResourceType m_art = QTextDocument::HtmlResource;
    QString m_titel;
    QList<Hilfeabschnitt> m_inhalt;
    QSet<QString> m_anker;
    QHash<QString, int> m_ankerPosition;
};

} // namespace frame
