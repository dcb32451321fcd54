// SPDX-License-Identifier: MIT

#include "shell/CVX440_AccessApplication.h"

#include "model/CDeviceDatabase.h"
#include "shell/CFormStyle.h"
#include "shell/CMainDialog.h"
#include "widgets/Accessibility.h"
#include "widgets/FormLook.h"

// The macro has to stand at file scope.
static void LoadResources()
{
    Q_INIT_RESOURCE(vx440);
}

namespace {

// Qt wants to know these before it makes the application.
int& WithAttributes(int& argc)
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    return argc;
}

// The forms have fixed geometries, which were checked with this style and font.
void UseFormLook()
{
    QApplication::setStyle(new CFormStyle); // NOLINT(*-NewDeleteLeaks): the application owns it
    QApplication::setFont(FormFont());
}

} // namespace

CVX440_AccessApplication::CVX440_AccessApplication(int& argc, char** argv)
    : QApplication(WithAttributes(argc), argv)
{
    LoadResources();
    UseFormLook();
    InstallAccessibility();
    TheDeviceDatabase()->ResetData();
    dialog.reset(new CMainDialog);
    dialog->setFont(FormFont()); // a theme may change the application's later
    dialog->setWindowFlags(
        dialog->windowFlags() | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    dialog->SetupDialog();
    dialog->ConnectSignals();
    dialog->exec();
}

CVX440_AccessApplication::~CVX440_AccessApplication() = default;
