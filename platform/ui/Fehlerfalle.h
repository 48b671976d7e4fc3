#pragma once

#include "platform/core/RuntimeError.h"

#include <QApplication>
#include <QString>
#include <exception>
#include <functional>
#include <optional>

namespace platform {

using FehlerReporter = std::function<void(const QString &ort, const RuntimeError &fehler)>;

// Sets who reports trapped errors (the frame sets the common error report). An empty function
// restores the default: a message box with the number, the text and the place.
void setFehlerReporter(FehlerReporter reporter);

// Hands a trapped error to the reporter. An error of the reporter itself is logged and dropped,
// so a trap always returns normally.
void fehlerMelden(const QString &ort, const RuntimeError &fehler);

// A standard exception as the runtime error the original would have raised (7 for memory,
// 5 otherwise, with the exception's text).
RuntimeError alsLaufzeitfehler(const std::exception &e);

// A procedure's error trap: runs `body`; a RuntimeError or standard exception is reported with
// `fehlerOrt` and the trap returns normally. True when the body ran without error.
template<class F> bool Falle(const QString &fehlerOrt, F &&body)
{
    try {
        std::forward<F>(body)();
        return true;
    } catch (const RuntimeError &e) {
        fehlerMelden(fehlerOrt, e);
    } catch (const std::exception &e) {
        fehlerMelden(fehlerOrt, alsLaufzeitfehler(e));
    }
    return false;
}

// Statement-level "resume next": each call runs one statement, traps its error, reports it
// (or, with Art::Still, only remembers it) and lets the caller go on with the next one.
class WeiterBeiFehler
{
public:
    enum class Art { Melden, Still };
    explicit WeiterBeiFehler(QString fehlerOrt, Art art = Art::Melden)
        : m_ort(std::move(fehlerOrt))
        , m_art(art)
    { }

    template<class F> bool operator()(F &&schritt)
    {
        try {
            std::forward<F>(schritt)();
            return true;
        } catch (const RuntimeError &e) {
            gefangen(e);
        } catch (const std::exception &e) {
            gefangen(alsLaufzeitfehler(e));
        }
        return false;
    }

    int fehlerAnzahl() const { return m_anzahl; }
    // The last trapped error, like the error object after a resumed statement.
    const std::optional<RuntimeError> &letzterFehler() const { return m_letzter; }

private:
    void gefangen(const RuntimeError &e);

    QString m_ort;
    Art m_art;
    int m_anzahl = 0;
    std::optional<RuntimeError> m_letzter;
};

// Shows an error that no trap caught, as the runtime did: a box titled with the application
// title, "Laufzeitfehler 'N':", an empty line and the description. The program goes on.
void zeigeLaufzeitfehler(const RuntimeError &fehler);
QString laufzeitfehlerText(const RuntimeError &fehler);

// The application object: an error that escapes an event handler is caught here, shown with
// zeigeLaufzeitfehler, and the event loop goes on.
class Anwendung : public QApplication
{
    Q_OBJECT
public:
    Anwendung(int &argc, char **argv);
    bool notify(QObject *empfaenger, QEvent *ereignis) override;
};

} // namespace platform
