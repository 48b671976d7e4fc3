#include "Sanduhr.h"

#include <QCursor>
#include <QGuiApplication>

namespace platform {

Sanduhr::Sanduhr()
{
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        m_aktiv = true;
    }
}

Sanduhr::~Sanduhr()
{
    beenden();
}

void Sanduhr::beenden()
{
    if (m_aktiv) {
        QGuiApplication::restoreOverrideCursor();
        m_aktiv = false;
    }
}

} // namespace platform
