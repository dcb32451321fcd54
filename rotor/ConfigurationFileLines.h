// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class CFileIO;

// The lines of a configuration file behind its banner. The keys of the parameters are written in
// full. Parts of a key are enough to read it, so a line typed by hand may be short: "Azimuth
// (SMD)=7".

/// The unit's identity and addresses, from the model. Nothing reads them back. False when the file
/// has not taken a line.
bool WriteIdentityLines(CFileIO& file);

/// Those parameters of a motor that the unit's firmware generation knows, from the model. False
/// when the file has not taken a line.
bool WriteParameterLines(CFileIO& file, int motor);

/// Stores the line's value in the model if the line is one of the motor's. A value that is no
/// number counts as 0. One of more than 16 bits is cut. The range is not looked at. False when the
/// line names a motor and no parameter, or a parameter and no motor, also where it is the other
/// motor.
bool ApplyConfigurationLine(const QString& line, int motor);
