// The subcommands of KSManUtil. Each takes the arguments after the subcommand
// name and returns the exit status: 0 done, 1 failed, 2 usage (the caller then
// prints the usage text).
#pragma once

// merge -P<predefined database> -I<Init database> -N<output database>
int RunMergeCommand(int argc, char** argv);
// header -S<signals header> -O<output header> [-C<target compiler>]
int RunHeaderCommand(int argc, char** argv);
// exports -D<module-definition file> NAME...
int RunExportsCommand(int argc, char** argv);

constexpr int kExitUsage = 2;
