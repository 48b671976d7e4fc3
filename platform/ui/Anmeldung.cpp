#include "Anmeldung.h"

#include "platform/core/Geheimnisse.h"
#include "platform/storage/PostgresDatabase.h"

#include <QApplication>
#include <QInputDialog>
#include <QLineEdit>

namespace platform {

std::optional<QString> kennwortErfragen(const QString &benutzer, const QString &server,
                                        const QString &grund)
{
    QInputDialog dialog(QApplication::activeModalWidget());
    dialog.setObjectName(QStringLiteral("dlgKennwort"));
    dialog.setWindowTitle(QStringLiteral("Anmeldung an der Datenbank"));
    const QString wo = server.isEmpty() || server.startsWith(u'/')
        ? QStringLiteral("auf diesem Rechner")
        : QStringLiteral("\u201E%1\u201C").arg(server);
    QString text = grund.isEmpty() ? QString() : grund + QStringLiteral("\n\n");
    text += QStringLiteral("Der Datenbankserver %1 verlangt ein Kennwort.\n\nKennwort für den "
                           "Benutzer \u201E%2\u201C:")
                .arg(wo, benutzer);
    dialog.setLabelText(text);
    dialog.setTextEchoMode(QLineEdit::Password);
    dialog.setOkButtonText(QStringLiteral("Anmelden"));
    dialog.setCancelButtonText(QStringLiteral("Abbrechen"));
    dialog.setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

void anmeldungEinrichten()
{
    protokollSchuetzen();
    storage::PostgresDatabase::setKennwortAbfrage(kennwortErfragen);
}

} // namespace platform
