#pragma once

namespace platform {

// The hourglass while a long step runs: set on construction, restored on destruction (also when
// an error unwinds). Nests. Does nothing without a GUI application.
class Sanduhr
{
public:
    Sanduhr();
    ~Sanduhr();
    Sanduhr(const Sanduhr &) = delete;
    Sanduhr &operator=(const Sanduhr &) = delete;

    // Restores the cursor early (before a message box, say); the destructor then does nothing.
    void beenden();

private:
    bool m_aktiv = false;
};

} // namespace platform
