#pragma once

#include <QString>

class CFileIO;

// The lines of a configuration file behind its banner. The keys of the parameters are written in
// full and recognised by parts, so that a line typed by hand may be short: "Azimuth (SMD)=7".

/// The unit's identity and addresses, from the model. Nothing reads them back. False when the file
/// has not taken a line.
bool WriteIdentityLines(CFileIO& file);

/// A motor's parameters from the model, those that the unit's firmware generation knows. False when
/// the file has not taken a line.
bool WriteParameterLines(CFileIO& file, int motor);

/// Stores the line's value in the model if the line is one of the motor's. A value that is no
/// number counts as 0, one of more than 16 bits is cut; its range is not looked at. False when the
/// line names a motor and no parameter or the reverse, whichever motor is meant.
bool ApplyConfigurationLine(const QString& line, int motor);
