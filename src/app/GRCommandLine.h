#pragma once

// The command-line uses of the program that open no window: --help, --version and
// --list [--needed], which prints the grocery list to standard output.
class GRCommandLine
{
public:
    // True when the arguments ask for one of them; main() then calls run() instead of starting
    // the application.
    static bool wantsCommandLine(int argc, char *argv[]);
    // The exit status.
    static int run(int argc, char *argv[]);
};
