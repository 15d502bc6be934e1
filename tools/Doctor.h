// Doctor.h: says what a run of the product would do, and every trap on the way.
#pragma once

#include "tools/Report.h"

#include <filesystem>
#include <string>

/// Whether there is such a file. One that the system does not let us look at, or whose name is too
/// long for it, is not there.
inline bool is_there(const std::filesystem::path& file)
{
    std::error_code none;
    return std::filesystem::exists(file, none);
}

/// The installation: the program, the library, and what the rooms make of their places.
/// program  path with which the product is started; also the first word of this process's command
///          line, where the rooms look for it
void examine_installation(const std::string& program, Report& report);

/// The plug-in, its configuration and WebKit's extension directory, as far as files tell.
void examine_plugin_files(Report& report);

/// The run that the process arguments ask for: plug-in, options, start page, icon, window, answer.
/// When g_CallRecorder says that the plug-in is loaded, it and the library run in this process.
/// prints  whether the host is asked to print the answer
void examine_run(bool prints, Report& report);

/// What surrounds the run: the engine, its environment, the graphics driver.
void examine_surroundings(Report& report);
