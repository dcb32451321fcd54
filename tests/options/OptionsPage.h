// SPDX-License-Identifier: MIT

#pragma once

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QVector>

/// The texts between the bars.
QStringList Split(const char* texts);

constexpr char ReadDone[] = "Options read from device successfully.";
constexpr char ReadFailed[] = "Failed to read Options from device";
constexpr char SendDone[] = "Options & description sent to device successfully.";
constexpr char OptionsNotSent[] = "Failed to send options to device!";
constexpr char DescriptionsNotSent[] = "Failed to send option descriptions to device!";

/// What a unit holds that has everything but a fifth filter, and one that has nothing.
constexpr char FullOptions[] =
    "VX440-DCF,VX440-DCF,VX440-ATT,VX440-FIL,VX440-FIL,VX440-A1+A2,VX440-F11,VX440-F12,VX440-F13,"
    "VX440-F14,0,VX440-F16,VX440-F21,VX440-F22,VX440-F23,VX440-F24,VX440-F25,ProSisTel,TD552";
constexpr char FullDescriptions[] =
    "12 V;24 V;through,3,6,10,20,40;0;0;one,two;d11;d12;;d14;d15;d16;d21;d22;d23;d24;d25;round;up";
constexpr char NoOptions[] = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
constexpr char NoDescriptions[] = ";;;;;;;;;;;;;;;;;;";

/// The full unit's options as the columns of a workbook.
QStringList FullNames();
QStringList FullTexts();

/// The groups by their number, the two rotators last.
constexpr int Groups = 7;
constexpr int FirstRotator = 5;
constexpr const char* BoxOf[Groups] = {"boxDcf", "boxAtt", "boxFilter1", "boxFilter2", "boxAmp",
    "boxOptionAzimuthRotator", "boxOptionPolarRotator"};

QGroupBox* Box(const QWidget& page, int group);
QPushButton* Button(const QWidget& page, const char* name);

/// The lines of a group as they are laid out; without those that new ones of a rotator cover.
QVector<QLineEdit*> Lines(const QWidget& page, int group);
/// Their texts or tool tips, of all groups.
QVector<QStringList> Shown(const QWidget& page);
QVector<QStringList> ToolTips(const QWidget& page);

/// What is shown of a unit that has everything, and of one that has nothing.
QVector<QStringList> FullGroups();
QVector<QStringList> EmptyGroups();
