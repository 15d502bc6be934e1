// Doctor.h: reports what a run of a product would do, and each fault on the way.
#pragma once

#include "tools/Report.h"

#include <filesystem>
#include <string>

/// Whether the file exists. A file that may not be looked at, or whose name is too long for the
/// system, counts as missing.
inline bool is_there(const std::filesystem::path& file)
{
    std::error_code none;
    return std::filesystem::exists(file, none);
}

/// Examines the installation: the program, the library, and the brand.
/// program  path with which the product is started; also the first word of this process's command
///          line, from which the layout reads it
void examine_installation(const std::string& program, Report& report);

/// Examines the files of the plug-in, its configuration and WebKit's extension directory; loads no
/// plug-in.
void examine_plugin_files(Report& report);

/// Examines the run that the process arguments ask for: plug-in, options, start page, user agent,
/// icon, answer, window. Loads the plug-in and the library into this process if
/// g_CallRecorder.loadsPlugin is true.
///
/// prints  whether the host is asked to print the answer
void examine_run(bool prints, Report& report);

/// Examines the engine, its environment variables and the graphics driver.
void examine_surroundings(Report& report);
