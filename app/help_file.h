#pragma once

/// Puts the help text and its launcher beside the database, each only if it is missing.
/// @throws RuntimeError 75 when a file cannot be written, 76 when its folder is missing.
void install_help();

/// Runs the launcher "C:\ostrix\help.bat", without waiting for it.
/// @throws RuntimeError 53 when it is missing or cannot be run.
void run_help_launcher();
