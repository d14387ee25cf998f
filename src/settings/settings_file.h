// SPDX-License-Identifier: MIT
// Reader of the settings file, a text of lines "key = value".
#pragma once

struct PanelSettings;

/// Reads "./orvala_panel.txt", or "c:/orvala_panel.txt" when the first cannot be opened, into a record that holds its
/// start values. Without either the record stays as it is. Blanks, '=' or both stand between key and value; keys that
/// are not known and lines without a value are skipped; a value that some keys do not know is told on standard output.
/// Lines of more than 255 characters count as several. A file that cannot be read to its end ends there.
void parseFile(PanelSettings *settings);
