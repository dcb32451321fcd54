// SPDX-License-Identifier: MIT

#include "link/ConnectToDevice.h"

#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "platform/Sleep.h"
#include "shell/CCustomProgressDialog.h"
#include "widgets/UserInput.h"

#include <QHostAddress>

namespace {

constexpr int PollsOfAnAttempt = 200;
constexpr unsigned PollMs = 100;

void AwaitConnection(QProgressDialog& dialog)
{
    for (int count = PollsOfAnAttempt; count > 0 && !dialog.wasCanceled(); --count) {
        platform::Sleep(PollMs);
        dialog.setValue(count);
        if (TheDeviceCommunication()->IsConnected()) {
            return;
        }
    }
}

void RepeatAttempts(ushort retries, const QByteArray& host, QProgressDialog& dialog)
{
    CDeviceCommunication* const device = TheDeviceCommunication();
    int attempts = 0;
    do {
        device->StartConnection(host);
        if (!device->IsConnected()) {
            AwaitConnection(dialog);
        }
        ++attempts;
        dialog.setLabelText(
            QStringLiteral("Connecting to VX440 (Attemp %1) ...").arg(attempts + 1));
        TheDeviceDatabase()->SetConnectionStatus(CDeviceDatabase::ConnectionReconnecting);
    } while (!device->IsConnected() && attempts <= retries && !dialog.wasCanceled());
}

} // namespace

bool ConnectToDevice(ushort retries, QString address)
{
    CDeviceDatabase* const database = TheDeviceDatabase();
    address = database->GetIpAddress();
    QHostAddress parsed;
    const bool valid = parsed.setAddress(address);
    address = parsed.toString();
    database->SetIpAddress(address);
    database->SetConnectionStatus(CDeviceDatabase::ConnectionConnecting);
    // A second click on the button waits until the dialog below is up, which swallows it.
    ProcessEventsBesidesInput();

    CCustomProgressDialog dialog(QStringLiteral("Connecting to VX440 (Attempt 1) ..."), 0, 0);
    if (valid) {
        RepeatAttempts(retries, address.toLocal8Bit(), dialog);
    } else {
        database->SetApplicationStatus(QStringLiteral("Invalid IP address."));
    }
    dialog.close();

    if (valid && TheDeviceCommunication()->IsConnected()) {
        database->SetConnectionStatus(CDeviceDatabase::ConnectionConnected);
    } else {
        database->SetConnectionStatus(CDeviceDatabase::ConnectionNotConnected);
        database->SetApplicationStatus(QStringLiteral("Connection failed! "));
    }
    return valid;
}
