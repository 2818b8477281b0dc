#ifndef COMMONAPI_TOOLS_COMMONAPI_H
#define COMMONAPI_TOOLS_COMMONAPI_H

/// All of the command but its process, so that it can be tried in another one: reads and writes the
/// standard streams, and returns the exit status.
int RunCommand(int argc, char** argv);

#endif
