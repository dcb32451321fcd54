#include "shell/CVX440_AccessApplication.h"

#include "model/CDeviceDatabase.h"
#include "shell/CFormStyle.h"
#include "shell/CMainDialog.h"

#include <QFont>

// At file scope, as the macro wants it.
static void LoadResources()
{
    Q_INIT_RESOURCE(vx440);
}

namespace {

// The forms have fixed geometries. This is the style and the size of letters that they were checked
// with; the families are as narrow as each other, so that the first one at hand serves.
constexpr int FormFontPixels = 11;

void UseFormLook()
{
    QApplication::setStyle(new CFormStyle); // NOLINT(*-NewDeleteLeaks): the application owns it
    QFont font;
    font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("DejaVu Sans Condensed"),
        QStringLiteral("Arial")});
    font.setPixelSize(FormFontPixels);
    // Only scripts that cannot be read without it are shaped: kerning costs time and 0.7 MB.
    font.setStyleStrategy(QFont::PreferNoShaping);
    QApplication::setFont(font);
}

} // namespace

CVX440_AccessApplication::CVX440_AccessApplication(int& argc, char** argv)
    : QApplication(argc, argv)
{
    LoadResources();
    UseFormLook();
    TheDeviceDatabase()->ResetData();
    dialog.reset(new CMainDialog);
    dialog->setWindowFlags(
        dialog->windowFlags() | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    dialog->SetupDialog();
    dialog->ConnectSignals();
    dialog->exec();
}

CVX440_AccessApplication::~CVX440_AccessApplication() = default;
