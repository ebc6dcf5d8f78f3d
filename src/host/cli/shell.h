#pragma once

class Printer;
class Session;

// Reads commands, one per line, and runs them in one session until "quit"
// or the end of input. Blank lines and lines starting with "#" are skipped.
// Returns the highest exit status of the commands, so that a script sees
// whether any step failed.
int runShell(Session* session, Printer* printer);
