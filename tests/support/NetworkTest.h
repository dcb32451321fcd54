// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/OwnNetwork.h"
#include "tests/support/Warnings.h"

#include <QtTest>

/// The base of a test in a network of its own, which is laid before the first test function. A
/// class with an initTestCase() of its own calls this one first.
class NetworkTest : public WarningsFail
{
    Q_OBJECT

protected:
    OwnNetwork network;

    void MustAddHost(const QString& ip, const QString& mac)
    {
        QVERIFY2(network.AddHost(ip, mac), qPrintable(network.Error()));
    }

    /// Runs `ip` with these arguments, separated by blanks.
    void MustRun(const QString& arguments)
    {
        QVERIFY2(network.Ip(arguments), qPrintable(network.Error()));
    }

protected slots:
    void initTestCase()
    {
        QVERIFY2(OwnNetwork::IsAllowed(), "to be run in a network namespace of its own");
        QVERIFY2(network.Lay(), qPrintable(network.Error()));
    }
};
