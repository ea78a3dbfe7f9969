#pragma once

#include <QProcess>
#include <QString>

// A private Xvfb display for one test; stopped (and its socket gone) on destruction.
class XvfbServer {
public:
    ~XvfbServer() { stop(); }
    static bool available();
    // Starts on a display number Xvfb picks itself (-displayfd), so parallel tests never
    // collide; false when Xvfb did not come up.
    bool start(int width = 1920, int height = 1080);
    // Starts again on the same display number (after stop()).
    bool restart();
    void stop();
    QString display() const { return QStringLiteral(":%1").arg(m_number); }

private:
    bool launch(bool pickNumber);
    QProcess m_process;
    int m_number = -1;
    int m_width = 0;
    int m_height = 0;
};
