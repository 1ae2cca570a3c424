// The commands, each in its own file.
#pragma once

namespace latchkey::cli {

class CommandLine;

void AddCipherCommands(CommandLine& commandLine);  // encrypt and decrypt
void AddIdentifyCommand(CommandLine& commandLine);
void AddRecordsCommands(CommandLine& commandLine);  // records encrypt, decrypt and hash
void AddHashCommand(CommandLine& commandLine);
void AddRandomCommands(CommandLine& commandLine);  // random and salt
void AddHexCommand(CommandLine& commandLine);
void AddOnlineCommand(CommandLine& commandLine);
void AddErrorsCommand(CommandLine& commandLine);

}  // namespace latchkey::cli
