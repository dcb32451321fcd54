// SPDX-License-Identifier: MIT

// Qt's offscreen platform leaves its screen behind when the program ends. What can be reached from
// here LeakSanitizer takes for no leak; every test program has this source.

#include <QCoreApplication>
#include <QGuiApplication>

namespace {

const QScreen* volatile keptScreen = nullptr; // written, never read

void KeepScreen()
{
    keptScreen = QGuiApplication::primaryScreen();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(KeepScreen)
