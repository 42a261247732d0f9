// The settings of the profile that users may change.
#pragma once

class SettingsFile;

/// Takes what the file holds over into g_cTvoProfile. A value that makes no sense, or is out of its range, leaves the field
/// as it is and is told. The net tolerance is not among them: it belongs to the model.
void LoadProfile(SettingsFile& settings);

/// Enters them in the settings.
void SaveProfile(SettingsFile& settings);
