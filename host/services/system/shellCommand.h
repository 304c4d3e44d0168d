#pragma once
// Commands of the phone for the shell. They are fixed texts of the program: nothing that came from outside
// (a file name, a server's reply, what a person typed) may ever be part of one. Any thread.
#include <string>
#include <vector>

namespace shellCommand {

// The command with the device root before each device path in it, quoted as its place in the command needs.
std::string mapped(const std::string& command, const std::string& root);
// This process's environment with the device root in it, for the phone's scripts and programs.
std::vector<std::string> environment(const std::string& root);
// True when a word that is run as a program stops or restarts the machine.
bool stopsMachine(const std::string& command);
// Runs it and waits. The exit status, or -1 when it could not be run or was killed.
int run(const std::string& command);
// Runs it in the background; nobody hears how it ends. False when it could not be started.
bool start(const std::string& command);

} // namespace shellCommand
